#pragma once

#include "Platform/CoreMIDI/Store/ObjectStore.h"

#include <map>
#include <vector>

namespace KestrinMIDI {

/// What can be asked of one object, at one moment.
struct ObjectState {
    MIDIObjectType type = kMIDIObjectType_Other;
    MIDIObjectRef owner = 0;
    MIDIObjectType ownerType = kMIDIObjectType_Other;
    std::vector<StoredProperty> properties; ///< its own, those that are not stored too, by key
};

/// The objects that are part of the setup, by reference.
using SetupState = std::map<MIDIObjectRef, ObjectState>;

SetupState StateOf(const ObjectStore& store);

/// One step from a state to a later one.
struct SetupChange {
    MIDINotificationMessageID kind = kMIDIMsgSetupChanged;
    MIDIObjectRef object = 0;
    MIDIObjectType type = kMIDIObjectType_Other;
    MIDIObjectRef owner = 0; ///< of one that was added or removed
    MIDIObjectType ownerType = kMIDIObjectType_Other;
    PropertyKey key = 0; ///< of a property that changed
};

/// The steps in an order in which no object stands without its owner; empty where nothing changed.
std::vector<SetupChange> ChangesBetween(const SetupState& before, const SetupState& after);

} // namespace KestrinMIDI
