#pragma once

#include "tools/midisetup/ObjectNaming.h"
#include "tools/midisetup/Properties.h"
#include "tools/midisetup/Studio.h"

#include <nlohmann/json.hpp>

namespace MidiSetup {

/// A studio as one JSON document:
///
///     { "format": "midisetup", "version": 1,
///       "devices": [
///         { "uniqueID": 7, "kind": "interface", "properties": { "name": "Desk" },
///           "entities": [
///             { "uniqueID": 8, "properties": { "name": "Port 1" },
///               "sources": [ { "uniqueID": 9, "properties": { "connUniqueID": 12 } } ],
///               "destinations": [ … ] } ] } ],
///       "endpoints": [ { "uniqueID": 20, "kind": "source", "properties": { … } } ] }
///
/// A property is a number, a string, { "data": "0a0b" } for bytes, or for several connections an
/// array of unique IDs. Each object lists its own properties only.
using Json = nlohmann::ordered_json;

Json StudioToJson(const Studio& studio);

/// One object, and what it has from its port and its device:
///
///     { "path": "Desk:Port 1:source", "kind": "source", "uniqueID": 9, "properties": { … },
///       "fromPort": { "name": "Port 1" }, "fromDevice": { "model": "Desk" } }
Json DetailsToJson(const NamedObject& object);

/// The object's own properties.
Json PropertiesToJson(MIDIObjectRef object);

Json ValueToJson(const std::string& key, const PropertyValue& value);

/// Throws Failure when it is none of the forms above.
PropertyValue ValueFromJson(const std::string& key, const Json& json);

/// The document as text, lines indented, ending in a line feed; characters that are not visible are
/// escaped.
std::string DocumentText(const Json& json);

} // namespace MidiSetup
