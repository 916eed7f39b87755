#include "tools/midisetup/Commands.h"
#include "tools/midisetup/Failure.h"
#include "tools/midisetup/ObjectNaming.h"
#include "tools/midisetup/Output.h"
#include "tools/midisetup/Properties.h"

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

std::string ShownValue(const PropertyValue& value) {
    if (const auto* number = std::get_if<SInt32>(&value))
        return std::to_string(*number);
    if (const auto* text = std::get_if<std::string>(&value))
        return Printable(*text);
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
        throw Failure("the number does not fit 32 bits; --string stores it as a text");
    return number;
}

PropertyValue ValueFor(const SetOptions& options) {
    if (options.asData) {
        if (auto bytes = FromHex(options.value))
            return *std::move(bytes);
        throw Failure("data is given as pairs of hexadecimal digits, as in 0a0b");
    }
    if (options.asString || IsTextKey(options.key))
        return options.value;
    return NumberOrString(options.value);
}

int Get(const PropertyOptions& options) {
    const auto value = GetProperty(Reference(options.object), options.key);
    if (!value)
        throw Failure("\"" + Printable(options.object) + "\" has no property \"" +
                      Printable(options.key) + "\"");
    std::cout << ShownValue(*value) << "\n";
    return kExitDone;
}

int Set(const SetOptions& options) {
    const PropertyValue value = ValueFor(options);
    SetProperty(Reference(options.object), options.key, value);
    return kExitDone;
}

int Unset(const PropertyOptions& options) {
    RemoveProperty(Reference(options.object), options.key);
    return kExitDone;
}

int Rename(const RenameOptions& options) {
    SetProperty(Reference(options.object), "name", options.name);
    return kExitDone;
}

std::shared_ptr<PropertyOptions> AddCommandOnProperty(CLI::App* command, Action& chosen,
                                                      int (*run)(const PropertyOptions&)) {
    auto options = OptionsFor(command, chosen, run);
    command->add_option("OBJECT", options->object, "A unique ID or a name")->required();
    command->add_option("KEY", options->key, "The property, such as manufacturer")->required();
    return options;
}

} // namespace

void AddPropertyCommands(CLI::App& program, Action& chosen) {
    AddCommandOnProperty(
        program.add_subcommand("get", "Print a property, the object's own or its owner's"), chosen,
        Get);
    AddCommandOnProperty(program.add_subcommand("unset", "Remove an object's own property"), chosen,
                         Unset);

    CLI::App* set = program.add_subcommand("set", "Set a property");
    Explain(set,
            "A VALUE that is a whole number is stored as one, any other as a text. The values of "
            "name,\nmanufacturer and model are always texts.");
    auto setOptions = OptionsFor(set, chosen, Set);
    set->add_option("OBJECT", setOptions->object, "A unique ID or a name")->required();
    set->add_option("KEY", setOptions->key, "The property")->required();
    set->add_option("VALUE", setOptions->value, "The new value")->required();
    auto* asString = set->add_flag("--string", setOptions->asString, "VALUE is a text");
    set->add_flag("--data", setOptions->asData, "VALUE is data in hexadecimal digits")
        ->excludes(asString);

    CLI::App* rename = program.add_subcommand("rename", "Give an object another name");
    auto renameOptions = OptionsFor(rename, chosen, Rename);
    rename->add_option("OBJECT", renameOptions->object, "A unique ID or a name")->required();
    rename->add_option("NAME", renameOptions->name, "The new name")->required();
}

} // namespace MidiSetup
