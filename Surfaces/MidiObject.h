#pragma once

#include <CoreFoundation/CFHolder.h>
#include <CoreMIDI/CoreMIDI.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The MIDI service's objects and their properties as values of the standard library. What the
/// service cannot answer is nothing, whatever the reason. Text is UTF-8.
namespace MidiObject {

using Text = CFHolder<CFStringRef>;
using Bytes = std::vector<unsigned char>;

std::string FromText(CFStringRef text);

/// Holds nothing where `utf8` is not valid UTF-8.
Text ToText(std::string_view utf8);

struct Found {
    MIDIObjectRef reference = 0;
    MIDIObjectType type{};
};
std::optional<Found> WithID(MIDIUniqueID id);

// The object's own properties or its owner's.

std::optional<SInt32> Integer(MIDIObjectRef object, CFStringRef key);
std::optional<std::string> String(MIDIObjectRef object, CFStringRef key);
std::optional<Bytes> Data(MIDIObjectRef object, CFStringRef key);

/// 0 for an unknown object.
MIDIUniqueID ID(MIDIObjectRef object);

/// The unique IDs that are packed in a property's bytes, in the host's byte order; a rest of less
/// than one ID counts for nothing.
std::vector<MIDIUniqueID> IDsIn(const Bytes& bytes);

/// The device that owns an endpoint; 0 for a program's own.
MIDIDeviceRef DeviceOf(MIDIEndpointRef endpoint);

} // namespace MidiObject
