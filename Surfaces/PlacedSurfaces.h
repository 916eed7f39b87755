#pragma once

#include <CoreMIDI/CoreMIDI.h>

#include <string>
#include <vector>

/// A surface that has a place in a group, plugged in or not.
struct PlacedSurface {
    MIDIUniqueID uniqueID = 0; ///< of the object that carries the settings
    SInt32 group = 0;
    SInt32 position = 0;
    SInt32 type = 0;                 ///< one of the codes of SurfaceModels.h
    std::string name;                ///< the unit's own, UTF-8
    MIDIEndpointRef source = 0;      ///< 0 while none leads from it
    MIDIEndpointRef destination = 0; ///< 0 while none leads to it
};

/// All surfaces with a place that a user chose (both settings within their range), by group, then
/// by position; those at one position in the order in which the service met them. Writes nothing.
std::vector<PlacedSurface> PlacedSurfaces();

/// How the ports of a group are called that surface-ports keeps on the sequencer: its client
/// ("Surfaces 0"), and the port of the group's n-th surface, n counted from 1 ("1 Mackie Control");
/// the latter cut at a whole character to what the sequencer's names hold.
std::string SurfaceClientName(SInt32 group);
std::string SurfacePortName(int place, const std::string& unitName);
