#include "tools/midisetup/Json.h"

#include "tools/messages/Messages.h"
#include "tools/midisetup/Connections.h"
#include "tools/midisetup/Failure.h"
#include "tools/midisetup/Output.h"

#include <cstdint>
#include <limits>

namespace MidiSetup {

namespace {

bool IsConnectionKey(const std::string& key) {
    return key == MidiObject::FromText(kMIDIPropertyConnectionUniqueID);
}

} // namespace

Json PropertiesToJson(MIDIObjectRef object) {
    Json properties = Json::object();
    for (const auto& [key, value] : OwnProperties(object))
        properties[key] = ValueToJson(key, value);
    return properties;
}

namespace {

/// Told apart from the properties, since it is what the system sees now and not a setting.
void MarkOffline(Json& json, bool isOffline) {
    if (isOffline)
        json["offline"] = true;
}

Json EndpointsToJson(const std::vector<Endpoint>& endpoints) {
    Json list = Json::array();
    for (const Endpoint& endpoint : endpoints)
        list.push_back(
            {{"uniqueID", endpoint.id}, {"properties", PropertiesToJson(endpoint.reference)}});
    return list;
}

Json EntityToJson(const Entity& entity) {
    return {{"uniqueID", entity.id},
            {"properties", PropertiesToJson(entity.reference)},
            {"sources", EndpointsToJson(entity.sources)},
            {"destinations", EndpointsToJson(entity.destinations)}};
}

Json DeviceToJson(const Device& device) {
    Json json = {{"uniqueID", device.id},
                 {"kind", KindName(device.kind)},
                 {"properties", PropertiesToJson(device.reference)},
                 {"entities", Json::array()}};
    for (const Entity& entity : device.entities)
        json["entities"].push_back(EntityToJson(entity));
    MarkOffline(json, device.isOffline);
    return json;
}

SInt32 IntegerFromJson(const std::string& key, const Json& json) {
    const bool isTooLarge =
        json.is_number_unsigned() &&
        json.get<std::uint64_t>() > std::uint64_t{std::numeric_limits<SInt32>::max()};
    const auto number = isTooLarge ? 0 : json.get<std::int64_t>();
    if (isTooLarge || number < std::numeric_limits<SInt32>::min())
        throw Failure(Message("the number of \"%1\" does not fit 32 bits", Printable(key)));
    return static_cast<SInt32>(number);
}

PropertyValue ConnectionsFromJson(const std::string& key, const Json& json) {
    std::vector<MIDIUniqueID> ids;
    for (const Json& id : json) {
        if (!id.is_number_integer())
            throw Failure(Message("\"%1\" lists something that is no unique ID", Printable(key)));
        ids.push_back(IntegerFromJson(key, id));
    }
    if (ids.empty())
        throw Failure(Message("\"%1\" is an empty list", Printable(key)));
    return ConnectionValue(ids);
}

} // namespace

Json StudioToJson(const Studio& studio) {
    Json json = {{"format", "midisetup"},
                 {"version", 1},
                 {"devices", Json::array()},
                 {"endpoints", Json::array()}};
    for (const Device& device : studio.devices)
        json["devices"].push_back(DeviceToJson(device));
    for (const Endpoint& endpoint : studio.programEndpoints) {
        json["endpoints"].push_back({{"uniqueID", endpoint.id},
                                     {"kind", endpoint.isSource ? "source" : "destination"},
                                     {"properties", PropertiesToJson(endpoint.reference)}});
        MarkOffline(json["endpoints"].back(), endpoint.isOffline);
    }
    return json;
}

Json DetailsToJson(const NamedObject& object) {
    Json json = {{"path", object.path},
                 {"kind", object.kind},
                 {"uniqueID", object.id},
                 {"properties", PropertiesToJson(object.reference)}};
    if (object.entity != nullptr && object.entity->reference != object.reference)
        json["fromPort"] = PropertiesToJson(object.entity->reference);
    if (object.device != nullptr && object.device->reference != object.reference)
        json["fromDevice"] = PropertiesToJson(object.device->reference);
    return json;
}

Json ValueToJson(const std::string& key, const PropertyValue& value) {
    if (const auto* number = std::get_if<SInt32>(&value))
        return *number;
    if (const auto* text = std::get_if<std::string>(&value))
        return *text;
    const auto& bytes = std::get<Bytes>(value);
    // A list of one is written as bytes, since a single number would come back as an integer.
    const bool isList = bytes.size() % sizeof(MIDIUniqueID) == 0 &&
                        bytes.size() > sizeof(MIDIUniqueID) && IsConnectionKey(key);
    if (isList)
        return ConnectionsIn(value);
    return {{"data", ToHex(bytes)}};
}

PropertyValue ValueFromJson(const std::string& key, const Json& json) {
    if (json.is_number_integer())
        return IntegerFromJson(key, json);
    if (json.is_string())
        return json.get<std::string>();
    if (json.is_array() && IsConnectionKey(key))
        return ConnectionsFromJson(key, json);
    if (json.is_object() && json.size() == 1 && json.contains("data") && json["data"].is_string()) {
        if (auto bytes = FromHex(json["data"].get<std::string>()))
            return *std::move(bytes);
    }
    throw Failure(
        Message("the value of \"%1\" is neither a number, a string nor data", Printable(key)));
}

std::string DocumentText(const Json& json) {
    return EscapedJson(json.dump(2, ' ', false, Json::error_handler_t::replace)) + "\n";
}

} // namespace MidiSetup
