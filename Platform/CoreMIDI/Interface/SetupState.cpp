#include "Platform/CoreMIDI/Interface/SetupState.h"

#include <algorithm>

namespace KestrinMIDI {

namespace {

std::vector<StoredProperty> PropertiesOf(const StoredObject& object) {
    std::vector<StoredProperty> properties = object.properties;
    properties.insert(properties.end(), object.live.begin(), object.live.end());
    properties.push_back({KeyTable::kUniqueID, PropertyValue::OfInteger(object.uniqueID)});
    if (HasDriver(object))
        properties.push_back(
            {KeyTable::kOffline, PropertyValue::OfInteger(object.IsPresent() ? 0 : 1)});
    std::sort(
        properties.begin(), properties.end(),
        [](const StoredProperty& one, const StoredProperty& other) { return one.key < other.key; });
    return properties;
}

SetupChange Step(MIDINotificationMessageID kind, MIDIObjectRef ref, const ObjectState& object) {
    return {kind, ref, object.type, object.owner, object.ownerType, 0};
}

bool IsSameObject(const ObjectState& one, const ObjectState& other) {
    return one.type == other.type && one.owner == other.owner;
}

/// The objects of one state that the other lacks.
std::vector<SetupChange> OnlyIn(const SetupState& one, const SetupState& other,
                                MIDINotificationMessageID kind) {
    std::vector<SetupChange> steps;
    for (const auto& [ref, object] : one) {
        const auto found = other.find(ref);
        if (found == other.end() || !IsSameObject(object, found->second))
            steps.push_back(Step(kind, ref, object));
    }
    // Devices, entities, endpoints: an owner's type is the lower one.
    std::stable_sort(steps.begin(), steps.end(), [](const SetupChange& a, const SetupChange& b) {
        return (a.type & ~kMIDIObjectType_ExternalMask) < (b.type & ~kMIDIObjectType_ExternalMask);
    });
    return steps;
}

void AddPropertyChanges(std::vector<SetupChange>& changes, const SetupChange& step,
                        const std::vector<StoredProperty>& before,
                        const std::vector<StoredProperty>& after) {
    auto old = before.begin();
    auto now = after.begin();
    while (old != before.end() || now != after.end()) {
        const bool isOld = now == after.end() || (old != before.end() && old->key <= now->key);
        const bool isNow = old == before.end() || (now != after.end() && now->key <= old->key);
        const PropertyKey key = isOld ? old->key : now->key;
        if (!isOld || !isNow || !(old->value == now->value)) {
            changes.push_back(step);
            changes.back().key = key;
        }
        old += isOld;
        now += isNow;
    }
}

} // namespace

SetupState StateOf(const ObjectStore& store) {
    SetupState state;
    store.ForEach([&state](const StoredObject& object) {
        if (object.Root().pendingSince)
            return;
        const StoredObject* const owner = object.owner;
        state[object.ref] = {object.type, owner ? owner->ref : 0,
                             owner ? owner->type : kMIDIObjectType_Other, PropertiesOf(object)};
    });
    return state;
}

std::vector<SetupChange> ChangesBetween(const SetupState& before, const SetupState& after) {
    std::vector<SetupChange> changes = OnlyIn(before, after, kMIDIMsgObjectRemoved);
    std::reverse(changes.begin(), changes.end());
    const std::vector<SetupChange> added = OnlyIn(after, before, kMIDIMsgObjectAdded);
    changes.insert(changes.end(), added.begin(), added.end());
    for (const auto& [ref, object] : after) {
        const auto found = before.find(ref);
        if (found != before.end() && IsSameObject(object, found->second))
            AddPropertyChanges(changes, Step(kMIDIMsgPropertyChanged, ref, object),
                               found->second.properties, object.properties);
    }
    return changes;
}

} // namespace KestrinMIDI
