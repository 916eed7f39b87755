#pragma once

#include "Surfaces/MidiDevice.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

/// Finds the control surfaces among the endpoints of the MIDI service: those that are a MIDI port
/// of their own, and those cabled to a port as an external device. What the service cannot answer
/// counts as absent; no error is reported. All texts are compared by their beginning, with case.

/// The size of the buffer that GetMidiEndpointName writes into, the final zero included.
inline constexpr std::size_t kMidiEndpointNameSize = 255;

/// Replaces the list by the complete records of all compatible surfaces that are present, in the
/// order in which they were first met. A surface without group settings gets its defaults stored.
void GetAvailableDevices(std::vector<MidiDevice>& list);

/// The same, but stores nothing: a surface without settings has its defaults in the record alone.
void ReadAvailableDevices(std::vector<MidiDevice>& list);

/// Considers one endpoint: adds a record for a surface that the list lacks, or completes the record
/// of one that it has. A further endpoint of a complete record only replaces the one it had.
void MaybeAddEndPointToDeviceList(std::vector<MidiDevice>& list, MIDIEndpointRef endpoint,
                                  bool isSource);

/// The endpoint's own unique ID if it is itself the port of a supported surface, else 0.
MIDIUniqueID IsEndpointAVirtualMIDIPort(MIDIEndpointRef endpoint);

/// The unique ID of the first compatible surface that the endpoint is connected to, 0 for none.
MIDIUniqueID IsDeviceAttachedToEndpoint(MIDIEndpointRef endpoint);

/// The unique ID of the object that carries the settings of the surface that the endpoint leads to;
/// 0 where it leads to none.
MIDIUniqueID SurfaceBehind(MIDIEndpointRef endpoint);

/// Whether the MIDI object with this unique ID is a compatible surface.
bool IsUniqueIDOurDevice(MIDIUniqueID id);

/// The surface's display name, UTF-8: the surface and its port, with the interface between them
/// where the port is another device's. Each name passes through `shown` before it is joined.
/// Nothing when one of them cannot be read.
using Shown = std::string(const std::string& name);
std::optional<std::string> JoinedSurfaceName(const MidiDevice& device,
                                             const std::function<Shown>& shown);

/// Writes the display name, its parts isolated, into a buffer of kMidiEndpointNameSize bytes,
/// cut at a character to fit. When a part of the name cannot be read the buffer is left as it was.
void GetMidiEndpointName(MidiDevice device, char* out);
