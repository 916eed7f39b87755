#include "tools/midisetup/Import.h"

#include "Surfaces/SurfaceGroups.h"

#include "tools/messages/Messages.h"
#include "tools/midisetup/Building.h"
#include "tools/midisetup/Failure.h"
#include "tools/midisetup/Output.h"
#include "tools/midisetup/Properties.h"
#include "tools/midisetup/SurfaceHints.h"

#include <algorithm>
#include <map>
#include <unordered_set>

namespace MidiSetup {

namespace {

using Properties = std::map<std::string, PropertyValue>;

/// A document of ours has the levels of Json.h; a few more may come.
constexpr int kDeepest = 20;

const Json& Member(const Json& object, const char* key, Json::value_t type) {
    if (!object.is_object() || !object.contains(key) || object[key].type() != type)
        throw Failure(Message("the document is not of the expected form: \"%1\" is missing or of "
                              "another type",
                              key));
    return object[key];
}

const Json& List(const Json& object, const char* key) {
    return Member(object, key, Json::value_t::array);
}

MIDIUniqueID IDIn(const Json& object) {
    if (!object.is_object() || !object.contains("uniqueID") ||
        !object["uniqueID"].is_number_integer())
        throw Failure(Message("the document is not of the expected form: an object has no \"%1\"",
                              "uniqueID"));
    return std::get<SInt32>(ValueFromJson("uniqueID", object["uniqueID"]));
}

/// What the service itself says of an object is not for bringing in.
bool IsTheServices(const std::string& key) {
    return key == "uniqueID" || key == "offline" || key == "driver";
}

Properties PropertiesIn(const Json& object) {
    Properties properties;
    for (const auto& [key, value] : Member(object, "properties", Json::value_t::object).items()) {
        if (!IsTheServices(key))
            properties.emplace(key, ValueFromJson(key, value));
    }
    return properties;
}

std::string TextIn(const Properties& properties, const char* key) {
    const auto found = properties.find(key);
    const auto* text =
        found == properties.end() ? nullptr : std::get_if<std::string>(&found->second);
    return text != nullptr ? *text : "";
}

Properties OwnPropertiesOf(MIDIObjectRef object) {
    Properties properties;
    for (auto& [key, value] : OwnProperties(object)) {
        if (!IsTheServices(key))
            properties.emplace(key, std::move(value));
    }
    return properties;
}

bool Holds(const Properties& properties, const std::string& key, const PropertyValue& value) {
    const auto found = properties.find(key);
    return found != properties.end() && found->second == value;
}

/// Sets what differs, removes what the document lacks.
void ApplyProperties(MIDIObjectRef object, const Properties& wanted) {
    const Properties present = OwnPropertiesOf(object);
    for (const auto& [key, value] : present) {
        if (wanted.count(key) == 0)
            RemoveProperty(object, key);
    }
    for (const auto& [key, value] : wanted) {
        if (!Holds(present, key, value))
            SetProperty(object, key, value);
    }
}

/// The objects that a document tells of, made in the order of their creation: first the unique ID,
/// by which others refer to it, then the properties.
void ApplyIdentity(MIDIObjectRef object, const Json& json) {
    SetProperty(object, "uniqueID", IDIn(json));
    ApplyProperties(object, PropertiesIn(json));
}

void BuildPortFrom(MIDIDeviceRef device, const Json& json) {
    const Json& sources = List(json, "sources");
    const Json& destinations = List(json, "destinations");
    const MIDIEntityRef entity =
        BuildPort(device, TextIn(PropertiesIn(json), "name"), sources.size(), destinations.size());
    ApplyIdentity(entity, json);
    for (std::size_t i = 0; i < sources.size(); ++i)
        ApplyIdentity(MIDIEntityGetSource(entity, i), sources[i]);
    for (std::size_t i = 0; i < destinations.size(); ++i)
        ApplyIdentity(MIDIEntityGetDestination(entity, i), destinations[i]);
}

void BuildDeviceFrom(DeviceKind kind, const Json& json) {
    const Properties properties = PropertiesIn(json);
    const DeviceDescription description{TextIn(properties, "name"),
                                        TextIn(properties, "manufacturer"),
                                        TextIn(properties, "model")};
    BuildDevice(kind, description, [&](MIDIDeviceRef device) {
        ApplyIdentity(device, json);
        for (const Json& port : List(json, "entities"))
            BuildPortFrom(device, port);
    });
}

/// Calls `visit` for a port and its endpoints.
void VisitPort(const Json& port, const std::function<void(const Json&)>& visit) {
    visit(port);
    for (const Json& source : List(port, "sources"))
        visit(source);
    for (const Json& destination : List(port, "destinations"))
        visit(destination);
}

void VisitDevice(const Json& device, const std::function<void(const Json&)>& visit) {
    visit(device);
    for (const Json& port : List(device, "entities"))
        VisitPort(port, visit);
}

std::string ShownValue(const std::string& key, const PropertyValue& value) {
    return Printable(ValueToJson(key, value).dump(-1, ' ', false, Json::error_handler_t::replace));
}

/// Reads the whole document, so that a fault in it is found before anything is changed.
void CheckDocument(const Json& document) {
    std::unordered_set<MIDIUniqueID> seen;
    const auto check = [&](const Json& object) {
        const MIDIUniqueID id = IDIn(object);
        if (id == kMIDIInvalidUniqueID || !seen.insert(id).second)
            throw Failure(Message(
                "the unique ID %1 of the document is not valid, or stands there twice", id));
        for (const auto& [key, value] : PropertiesIn(object)) {
            if (const auto fault = FaultInSetting(id, key, value))
                throw Failure(Message("the object %1 of the document: %2, not %3", id, *fault,
                                      ShownValue(key, value)));
        }
    };
    for (const Json& device : List(document, "devices"))
        VisitDevice(device, check);
    for (const Json& endpoint : List(document, "endpoints"))
        check(endpoint);
}

std::optional<DeviceKind> KindIn(const Json& json) {
    const std::string kind = Member(json, "kind", Json::value_t::string).get<std::string>();
    for (const DeviceKind known :
         {DeviceKind::kCard, DeviceKind::kInterface, DeviceKind::kExternal})
        if (kind == KindName(known))
            return known;
    return std::nullopt;
}

using Walk = void (*)(const Json&, const std::function<void(const Json&)>&);

class Planner {
public:
    Planner(const Studio& studio, const ObjectNames& names)
        : fStudio(studio)
        , fNames(names) {}

    void PlanDevice(const Json& json);
    void PlanEndpoint(const Json& json);
    ImportPlan Take() { return std::move(fPlan); }

private:
    const Device* Match(const Json& json, DeviceKind kind) const;
    const Device* MatchCard(const Json& json) const;
    void PlanKnownDevice(const Device& device, const Json& json);
    void PlanPort(const Device& device, std::size_t index, const Json& json);
    void PlanEndpoints(const std::vector<Endpoint>& endpoints, const Json& list,
                       const std::string& port);
    void PlanProperties(MIDIObjectRef object, const Json& json);
    MIDIUniqueID FirstTaken(Walk walk, const Json& json) const;
    void Note(std::string text) { fPlan.notes.push_back(std::move(text)); }

    const Studio& fStudio;
    const ObjectNames& fNames;
    ImportPlan fPlan;
};

void Planner::PlanDevice(const Json& json) {
    const auto kind = KindIn(json);
    if (!kind)
        throw Failure(Message("the document has a device of an unknown kind"));
    const std::string name = Printable(TextIn(PropertiesIn(json), "name"));
    if (const Device* device = Match(json, *kind))
        PlanKnownDevice(*device, json);
    else if (*kind == DeviceKind::kCard)
        Note(Message("%1 is left out: it was never plugged in here", name));
    else if (const MIDIUniqueID taken = FirstTaken(VisitDevice, json);
             taken != kMIDIInvalidUniqueID)
        Note(Message("%1 is left out: %2 has its unique ID", name, fNames.Describe(taken)));
    else
        fPlan.changes.push_back({*kind == DeviceKind::kExternal ? Message("add external %1", name)
                                                                : Message("add interface %1", name),
                                 [json, kind] { BuildDeviceFrom(*kind, json); }});
}

/// The first unique ID within a new device or port that some object here has.
MIDIUniqueID Planner::FirstTaken(Walk walk, const Json& json) const {
    MIDIUniqueID taken = kMIDIInvalidUniqueID;
    walk(json, [&](const Json& object) {
        if (taken == kMIDIInvalidUniqueID && fNames.WithID(IDIn(object)) != nullptr)
            taken = IDIn(object);
    });
    return taken;
}

const Device* Planner::Match(const Json& json, DeviceKind kind) const {
    const NamedObject* object = fNames.WithID(IDIn(json));
    const bool isMatch = object != nullptr && object->device != nullptr &&
                         object->entity == nullptr && object->device->kind == kind;
    if (isMatch)
        return object->device;
    return kind == DeviceKind::kCard ? MatchCard(json) : nullptr;
}

const Device* Planner::MatchCard(const Json& json) const {
    const Properties wanted = PropertiesIn(json);
    for (const Device& device : fStudio.devices) {
        const bool isSame =
            device.kind == DeviceKind::kCard && device.name == TextIn(wanted, "name") &&
            MidiObject::String(device.reference, kMIDIPropertyManufacturer).value_or("") ==
                TextIn(wanted, "manufacturer") &&
            MidiObject::String(device.reference, kMIDIPropertyModel).value_or("") ==
                TextIn(wanted, "model");
        if (isSame)
            return &device;
    }
    return nullptr;
}

void Planner::PlanKnownDevice(const Device& device, const Json& json) {
    PlanProperties(device.reference, json);
    const Json& ports = List(json, "entities");
    for (std::size_t i = 0; i < ports.size(); ++i)
        PlanPort(device, i, ports[i]);
}

void Planner::PlanPort(const Device& device, std::size_t index, const Json& json) {
    const std::string name = Printable(device.name + ":" + TextIn(PropertiesIn(json), "name"));
    if (index < device.entities.size()) {
        const Entity& entity = device.entities[index];
        PlanProperties(entity.reference, json);
        PlanEndpoints(entity.sources, List(json, "sources"), name);
        PlanEndpoints(entity.destinations, List(json, "destinations"), name);
    } else if (device.kind == DeviceKind::kCard ||
               FirstTaken(VisitPort, json) != kMIDIInvalidUniqueID) {
        Note(Message("%1 is left out: the device has no such port here", name));
    } else {
        fPlan.changes.push_back(
            {Message("add port %1", name),
             [reference = device.reference, json] { BuildPortFrom(reference, json); }});
    }
}

void Planner::PlanEndpoints(const std::vector<Endpoint>& endpoints, const Json& list,
                            const std::string& port) {
    if (endpoints.size() != list.size())
        Note(Message("%1 has another number of sources or destinations here", port));
    for (std::size_t i = 0; i < std::min(endpoints.size(), list.size()); ++i)
        PlanProperties(endpoints[i].reference, list[i]);
}

void Planner::PlanEndpoint(const Json& json) {
    const std::string name = Printable(TextIn(PropertiesIn(json), "name"));
    const NamedObject* object = fNames.WithID(IDIn(json));
    if (object != nullptr && object->device == nullptr)
        PlanProperties(object->reference, json);
    else
        Note(Message("%1 is left out: no program has this port here", name));
}

void Planner::PlanProperties(MIDIObjectRef reference, const Json& json) {
    const NamedObject* object = fNames.WithID(MidiObject::ID(reference));
    const std::string owner = object != nullptr ? Printable(object->path) : Message("an object");
    Properties wanted = PropertiesIn(json);
    // No position chosen there is none chosen here, also where the unique IDs differ.
    if (object != nullptr && Holds(wanted, kGroupPositionKey, IDIn(json)))
        wanted[kGroupPositionKey] = object->id;
    const Properties present = OwnPropertiesOf(reference);
    for (const auto& [key, value] : present) {
        if (wanted.count(key) == 0)
            fPlan.changes.push_back({Message("remove %1 of %2", Printable(key), owner),
                                     [reference, name = key] { RemoveProperty(reference, name); }});
    }
    for (const auto& [key, value] : wanted) {
        if (!Holds(present, key, value))
            fPlan.changes.push_back(
                {Message("set %1 of %2 to %3", Printable(key), owner, ShownValue(key, value)),
                 [reference, name = key, wantedValue = value] {
                     SetProperty(reference, name, wantedValue);
                 }});
    }
}

} // namespace

ImportPlan PlanImport(const Json& document, const Studio& studio, const ObjectNames& names) {
    CheckDocument(document);
    Planner planner(studio, names);
    for (const Json& device : List(document, "devices"))
        planner.PlanDevice(device);
    for (const Json& endpoint : List(document, "endpoints"))
        planner.PlanEndpoint(endpoint);
    return planner.Take();
}

Json ParseDocument(const std::string& text) {
    const auto refuseDepth = [](int depth, Json::parse_event_t, const Json&) {
        if (depth > kDeepest)
            throw Failure(
                Message("the document is nested too deep for one that \"midisetup export\" wrote"));
        return true;
    };
    Json document = Json::parse(text, refuseDepth, false);
    if (document.is_discarded())
        throw Failure(Message("the document is not JSON"));
    const bool isOurs = document.is_object() && document.value("format", Json()) == "midisetup";
    if (!isOurs)
        throw Failure(Message("the document is not one that \"midisetup export\" wrote"));
    if (document.value("version", Json()) != 1)
        throw Failure(Message("the document was written by a newer midisetup"));
    return document;
}

} // namespace MidiSetup
