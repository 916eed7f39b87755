#include "tools/messages/Messages.h"
#include "tools/midisetup/Commands.h"
#include "tools/midisetup/Failure.h"
#include "tools/midisetup/ObjectNaming.h"
#include "tools/midisetup/Output.h"
#include "tools/midisetup/Properties.h"
#include "tools/midisetup/SurfaceHints.h"

#include <charconv>
#include <iostream>

namespace MidiSetup {

namespace {

struct PropertyOptions {
    std::string object;
    std::string key;
};

struct SetOptions {
    std::string object;
    std::string key;
    std::string value;
    bool asString = false;
    bool asData = false;
};

struct RenameOptions {
    std::string object;
    std::string name;
};

MIDIObjectRef Reference(const std::string& object) {
    const Studio studio = ReadStudio();
    return ObjectNames(studio).Named(object).reference;
}

void RequireKey(const std::string& key) {
    if (key.empty())
        throw Failure(Message("the key is empty; give one of a letter at least"));
}

/// Keys that look like a surface's settings and are read by nobody.
void RefuseMistakenKey(const std::string& key, const Device* device) {
    const std::string lower = LowerCase(key);
    const bool looksLikeSetting =
        lower == "group" || lower == "position" || lower == "groupid" || lower == "grouppos";
    if (looksLikeSetting && device != nullptr && IsSurface(*device))
        throw Failure(
            Message("no program reads \"%1\"; a surface gets its place by: midisetup place "
                    "SURFACE GROUP POSITION",
                    Printable(key)));
}

std::string ShownValue(const PropertyValue& value) {
    if (const auto* number = std::get_if<SInt32>(&value))
        return std::to_string(*number);
    if (const auto* text = std::get_if<std::string>(&value))
        return Escaped(*text);
    return ToHex(std::get<Bytes>(value));
}

/// Names are texts, also those that look like a number.
bool IsTextKey(const std::string& key) {
    return key == "name" || key == "manufacturer" || key == "model";
}

PropertyValue NumberOrString(const std::string& value) {
    SInt32 number = 0;
    const char* end = value.data() + value.size();
    const auto result = std::from_chars(value.data(), end, number);
    if (result.ptr != end || value.empty())
        return value;
    if (result.ec == std::errc::result_out_of_range)
        throw Failure(Message("the number does not fit 32 bits; --string stores it as a text"));
    return number;
}

PropertyValue ValueFor(const SetOptions& options) {
    if (options.asData) {
        if (auto bytes = FromHex(options.value))
            return *std::move(bytes);
        throw Failure(Message("data is given as pairs of hexadecimal digits, as in 0a0b"));
    }
    if (options.asString || IsTextKey(options.key))
        return options.value;
    return NumberOrString(options.value);
}

int Get(const PropertyOptions& options) {
    const auto value = GetProperty(Reference(options.object), options.key);
    if (!value)
        throw Failure(Message(R"("%1" has no property "%2")", Printable(options.object),
                              Printable(options.key)));
    std::cout << ShownValue(*value) << "\n";
    return kExitDone;
}

std::string Set(const SetOptions& options) {
    const Studio studio = ReadStudio();
    const ObjectNames names(studio);
    const NamedObject& object = names.Named(options.object);
    const PropertyValue value = ValueFor(options);
    RequireKey(options.key);
    RefuseMistakenKey(options.key, object.device);
    if (options.key == "name")
        RequireName(options.value);
    if (const auto fault = FaultInSetting(object.id, options.key, value))
        throw Failure(Message("%1, not \"%2\"; try: midisetup place SURFACE GROUP POSITION", *fault,
                              Printable(options.value)));
    SetProperty(object.reference, options.key, value);
    return "";
}

std::string Unset(const PropertyOptions& options) {
    RequireKey(options.key);
    RemoveProperty(Reference(options.object), options.key);
    return "";
}

std::string Rename(const RenameOptions& options) {
    RequireName(options.name);
    SetProperty(Reference(options.object), "name", options.name);
    return "";
}

void AddOptionsOnProperty(CLI::App* command, PropertyOptions& options) {
    command->add_option("OBJECT", options.object, Message("A unique ID or a name"))->required();
    command->add_option("KEY", options.key, Message("The property, such as manufacturer"))
        ->required();
}

} // namespace

void AddPropertyCommands(CLI::App& program, Action& chosen) {
    CLI::App* get =
        program.add_subcommand("get", Message("Print a property, the object's own or its owner's"));
    AddOptionsOnProperty(get, *OptionsForReading(get, chosen, Get));
    CLI::App* unset = program.add_subcommand("unset", Message("Remove an object's own property"));
    AddOptionsOnProperty(unset, *OptionsForChange(unset, chosen, Unset));

    CLI::App* set = program.add_subcommand("set", Message("Set a property"));
    Explain(
        set,
        Message(
            "A VALUE that is a whole number is stored as one, any other as a text. The values of "
            "name,\nmanufacturer and model are always texts. A surface's group and position are "
            "set by \"place\"."));
    auto setOptions = OptionsForChange(set, chosen, Set);
    set->add_option("OBJECT", setOptions->object, Message("A unique ID or a name"))->required();
    set->add_option("KEY", setOptions->key, Message("The property"))->required();
    set->add_option("VALUE", setOptions->value, Message("The new value"))->required();
    auto* asString = set->add_flag("--string", setOptions->asString, Message("VALUE is a text"));
    set->add_flag("--data", setOptions->asData, Message("VALUE is data in hexadecimal digits"))
        ->excludes(asString);

    CLI::App* rename = program.add_subcommand("rename", Message("Give an object another name"));
    auto renameOptions = OptionsForChange(rename, chosen, Rename);
    rename->add_option("OBJECT", renameOptions->object, Message("A unique ID or a name"))
        ->required();
    rename->add_option("NAME", renameOptions->name, Message("The new name"))->required();
}

} // namespace MidiSetup
