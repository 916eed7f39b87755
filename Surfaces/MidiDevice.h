#pragma once

#include <CoreMIDI/CoreMIDI.h>

/// One compatible control surface, as a scan found it.
struct MidiDevice {
    /// The source that leads from the surface; 0 until it is met.
    MIDIEndpointRef sourceEndpoint = 0;

    /// The destination that leads to the surface; 0 until it is met.
    MIDIEndpointRef destinationEndpoint = 0;

    /// The unique ID of the object that carries the surface's settings; records are matched by it.
    MIDIUniqueID uniqueID = 0;

    /// One of the kSurfaceType codes of SurfaceModels.h; 0 while one of the endpoints is
    /// missing.
    SInt32 surfaceType = 0;

    /// The place within the group.
    SInt32 groupPosition = 0;

    /// The group that the surface belongs to.
    SInt32 groupID = 0;
};
