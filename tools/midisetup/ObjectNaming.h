#pragma once

#include "tools/midisetup/Studio.h"

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace MidiSetup {

/// Throws Failure where a name that is to be given is empty.
void RequireName(const std::string& name);

/// Whether a person may have meant `name` by `given`; both in lower case.
bool IsSimilar(const std::string& given, const std::string& name);

/// One object of the studio and what a person may call it.
struct NamedObject {
    MIDIObjectRef reference = 0;
    MIDIUniqueID id = 0;
    std::string kind; ///< "interface", "port", "source" …; Filled translates it
    std::string path; ///< "Device", "Device:Port", "Device:Port:source"
    std::vector<std::string> otherNames; ///< further names, which other objects may share
    const Device* device = nullptr;      ///< the device it is or belongs to; null: a program's
    const Entity* entity = nullptr;      ///< the port it is or belongs to; null for a device
};

/// The names of a studio's objects. An object is called by its unique ID, or by name: a device by
/// its own, a port "Device:Port", one direction of a port "Device:Port:source" or "…:destination",
/// a program's endpoint by its own. The studio must outlive this.
class ObjectNames {
public:
    explicit ObjectNames(const Studio& studio);

    /// Throws Failure, naming the candidates, when none or several are called so.
    const NamedObject& Named(std::string_view given) const;

    /// The same for a port, which a program's name alone means with both its directions; one of
    /// them is answered.
    const NamedObject& NamedPort(std::string_view given) const;

    /// Null if there is none.
    const NamedObject* WithID(MIDIUniqueID id) const;

    /// What to call the object in a text: its path, or that it is gone.
    std::string Describe(MIDIUniqueID id) const;

    /// How a command line names the object: its path in quotation marks where that names it alone,
    /// else its unique ID.
    std::string Word(MIDIUniqueID id) const;

    /// Whether the object's path names no other.
    bool IsNamedByPath(const NamedObject& object) const;

    const std::vector<NamedObject>& All() const { return fObjects; }

private:
    void AddDevice(const Device& device);
    void AddEntity(const Device& device, const Entity& entity);
    void AddEndpoint(const Device* device, const Entity* entity, const Endpoint& endpoint);
    void Add(NamedObject object);
    std::vector<const NamedObject*> Called(std::string_view given) const;
    [[noreturn]] void FailToName(std::string_view given,
                                 const std::vector<const NamedObject*>& called) const;
    std::vector<const NamedObject*> Similar(std::string_view given) const;

    std::vector<NamedObject> fObjects;
    std::unordered_map<MIDIUniqueID, std::size_t> fByID;
};

} // namespace MidiSetup
