#include "tools/midisetup/ObjectNaming.h"

#include "tools/messages/Messages.h"
#include "tools/midisetup/Failure.h"
#include "tools/midisetup/Output.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <optional>

namespace MidiSetup {

namespace {

std::optional<MIDIUniqueID> ParseID(std::string_view text) {
    MIDIUniqueID id = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), id);
    if (error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return id;
}

/// How many letters must be put in, left out or changed to make one text of the other.
std::size_t EditDistance(std::string_view one, std::string_view other) {
    std::vector<std::size_t> row(other.size() + 1);
    for (std::size_t i = 0; i < row.size(); ++i)
        row[i] = i;
    for (const char letter : one) {
        std::size_t diagonal = row[0]++;
        for (std::size_t j = 0; j < other.size(); ++j) {
            const std::size_t change = diagonal + (letter == other[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({row[j] + 1, diagonal + 1, change});
        }
    }
    return row.back();
}

/// Names longer than this are compared by their parts only.
constexpr std::size_t kLongestMisspelt = 200;

bool IsCalled(const NamedObject& object, std::string_view given) {
    const auto& names = object.otherNames;
    return object.path == given || std::find(names.begin(), names.end(), given) != names.end();
}

std::string CandidateLines(const std::vector<const NamedObject*>& candidates) {
    constexpr std::size_t kMostShown = 10;
    std::string lines;
    for (std::size_t i = 0; i < candidates.size() && i < kMostShown; ++i) {
        const NamedObject& candidate = *candidates[i];
        lines += "\n  " + Message("%1  (%2, unique ID %3)", Printable(candidate.path),
                                  Filled(candidate.kind.c_str()), candidate.id);
    }
    if (candidates.size() > kMostShown)
        lines += "\n  " + Counted("and %1 more", "and %1 more", candidates.size() - kMostShown);
    return lines;
}

/// The text without the marks that Printable isolates a name with, as a name that was copied from a
/// terminal has them.
std::string WithoutIsolates(std::string_view text) {
    std::string plain(text);
    for (const std::string_view mark : {"\u2068", "\u2069"}) {
        for (std::size_t at = plain.find(mark); at != std::string::npos; at = plain.find(mark))
            plain.erase(at, mark.size());
    }
    return plain;
}

/// Whether one name of a program's port means both of its directions.
bool IsOnePort(const std::vector<const NamedObject*>& called) {
    return called.size() == 2 && called[0]->device == nullptr && called[1]->device == nullptr &&
           called[0]->kind != called[1]->kind;
}

bool IsPlainInShell(const std::string& text) {
    return !text.empty() && text.front() != '-' &&
           std::all_of(text.begin(), text.end(), [](char letter) {
               return std::isalnum(static_cast<unsigned char>(letter)) != 0 ||
                      std::string_view(" :-_.,+/()").find(letter) != std::string_view::npos;
           });
}

} // namespace

void RequireName(const std::string& name) {
    if (name.empty())
        throw Failure(Message("the name is empty; give one of a letter at least"));
}

bool IsSimilar(const std::string& given, const std::string& name) {
    if (name.find(given) != std::string::npos)
        return true;
    if (given.size() > kLongestMisspelt || name.size() > kLongestMisspelt)
        return false;
    return EditDistance(given, name) <= given.size() / 4 + 1;
}

ObjectNames::ObjectNames(const Studio& studio) {
    for (const Device& device : studio.devices)
        AddDevice(device);
    for (const Endpoint& endpoint : studio.programEndpoints)
        AddEndpoint(nullptr, nullptr, endpoint);
}

void ObjectNames::AddDevice(const Device& device) {
    Add({device.reference, device.id, KindName(device.kind), device.name, {}, &device, nullptr});
    for (const Entity& entity : device.entities)
        AddEntity(device, entity);
}

void ObjectNames::AddEntity(const Device& device, const Entity& entity) {
    const std::string path = device.name + ":" + entity.name;
    Add({entity.reference, entity.id, Marked("port"), path, {}, &device, &entity});
    for (const Endpoint& source : entity.sources)
        AddEndpoint(&device, &entity, source);
    for (const Endpoint& destination : entity.destinations)
        AddEndpoint(&device, &entity, destination);
}

void ObjectNames::AddEndpoint(const Device* device, const Entity* entity,
                              const Endpoint& endpoint) {
    const std::string kind = endpoint.isSource ? Marked("source") : Marked("destination");
    NamedObject object{
        endpoint.reference, endpoint.id, kind, endpoint.name + ":" + kind, {}, device, entity};
    if (entity == nullptr)
        object.otherNames = {endpoint.name};
    else
        object.path = device->name + ":" + entity->name + ":" + kind;
    // A jack's name of its own may name the endpoint too.
    if (entity != nullptr && endpoint.name != entity->name)
        object.otherNames = {device->name + ":" + endpoint.name};
    Add(std::move(object));
}

void ObjectNames::Add(NamedObject object) {
    fByID.emplace(object.id, fObjects.size());
    fObjects.push_back(std::move(object));
}

const NamedObject& ObjectNames::Named(std::string_view given) const {
    const auto called = Called(given);
    if (called.size() == 1)
        return *called.front();
    FailToName(given, called);
}

const NamedObject& ObjectNames::NamedPort(std::string_view given) const {
    const auto called = Called(given);
    if (called.size() == 1 || IsOnePort(called))
        return *called.front();
    FailToName(given, called);
}

std::vector<const NamedObject*> ObjectNames::Called(std::string_view given) const {
    const auto id = ParseID(given);
    if (const NamedObject* object = id ? WithID(*id) : nullptr)
        return {object};
    std::vector<const NamedObject*> called;
    for (const NamedObject& object : fObjects) {
        if (IsCalled(object, given))
            called.push_back(&object);
    }
    const std::string plain = WithoutIsolates(given);
    return called.empty() && plain != given ? Called(plain) : called;
}

void ObjectNames::FailToName(std::string_view given,
                             const std::vector<const NamedObject*>& called) const {
    const std::string name = Printable(given);
    if (given.empty())
        throw Failure(Message("the name is empty; \"midisetup list\" shows what there is"));
    if (!called.empty())
        throw Failure(Message("\"%1\" names more than one; use the unique ID:", name) +
                      CandidateLines(called));
    const auto similar = Similar(given);
    if (!similar.empty())
        throw Failure(Message("nothing is called \"%1\"; did you mean", name) +
                      CandidateLines(similar));
    throw Failure(Message(R"(nothing is called "%1"; "midisetup list" shows what there is)", name));
}

std::vector<const NamedObject*> ObjectNames::Similar(std::string_view given) const {
    std::vector<const NamedObject*> similar;
    const std::string wanted = LowerCase(given);
    for (const NamedObject& object : fObjects) {
        if (!wanted.empty() && IsSimilar(wanted, LowerCase(object.path)))
            similar.push_back(&object);
    }
    return similar;
}

const NamedObject* ObjectNames::WithID(MIDIUniqueID id) const {
    const auto found = fByID.find(id);
    return found == fByID.end() ? nullptr : &fObjects[found->second];
}

std::string ObjectNames::Describe(MIDIUniqueID id) const {
    const NamedObject* object = WithID(id);
    return object != nullptr ? Printable(object->path)
                             : Message("an object that is gone (unique ID %1)", id);
}

std::string ObjectNames::Word(MIDIUniqueID id) const {
    const NamedObject* const object = WithID(id);
    const bool isClear =
        object != nullptr && IsPlainInShell(object->path) && IsNamedByPath(*object);
    return isClear ? "\"" + object->path + "\"" : std::to_string(id);
}

bool ObjectNames::IsNamedByPath(const NamedObject& object) const {
    const auto called = Called(object.path);
    return called.size() == 1 && called[0] == &object;
}

} // namespace MidiSetup
