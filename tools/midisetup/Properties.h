#pragma once

#include "Surfaces/MidiObject.h"

#include <utility>
#include <variant>

/// Properties of any type, and changing them.
namespace MidiSetup {

using MidiObject::Bytes;
using MidiObject::Text;
using PropertyValue = std::variant<SInt32, std::string, Bytes>;

/// Throws Failure when `utf8` is not valid UTF-8.
Text RequireText(std::string_view utf8);

/// The value that the object answers with, its own or its owner's.
std::optional<PropertyValue> GetProperty(MIDIObjectRef object, const std::string& key);

/// The object's own properties, by key; the unique ID is not among them.
std::vector<std::pair<std::string, PropertyValue>> OwnProperties(MIDIObjectRef object);

/// Where the object is on this machine now: its live properties, its own or its owner's.
std::vector<std::pair<std::string, PropertyValue>> LiveProperties(MIDIObjectRef object);

/// Both throw Failure when the service refuses.
void SetProperty(MIDIObjectRef object, const std::string& key, const PropertyValue& value);
void RemoveProperty(MIDIObjectRef object, const std::string& key);

/// Throws Failure with the meaning of `status` unless it is success. `refusal` tells what could not
/// be done.
void Check(OSStatus status, const std::string& refusal);

/// Bytes as pairs of hexadecimal digits, and back; nothing when `hex` is not that.
std::string ToHex(const Bytes& bytes);
std::optional<Bytes> FromHex(std::string_view hex);

} // namespace MidiSetup
