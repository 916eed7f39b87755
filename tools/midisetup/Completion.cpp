#include "tools/midisetup/Completion.h"

#include "tools/messages/Messages.h"
#include "tools/midisetup/ObjectNaming.h"
#include "tools/midisetup/Output.h"
#include "tools/midisetup/Usage.h"

#include <sstream>

namespace MidiSetup {

namespace {

std::string Line(const std::string& word, const std::string& description) {
    return word + "\t" + description + "\n";
}

std::string CommandLines(CLI::App& app) {
    std::string lines;
    for (const CLI::App* command : CommandsOf(app))
        lines += Line(command->get_name(), command->get_description());
    return lines;
}

std::string OptionLines(const CLI::App& app) {
    std::string lines;
    for (const CLI::Option* option : app.get_options()) {
        for (const std::string& name : option->get_lnames())
            lines += Line("--" + name, option->get_description());
    }
    return lines;
}

/// Whether an argument of that name takes the object.
bool Takes(const std::string& argument, const NamedObject& object) {
    const bool isExternal = object.device && object.device->kind == DeviceKind::kExternal;
    const bool isDevice = object.device && !object.entity;
    const bool isPort = object.entity && object.kind == "port";
    if (argument == "SURFACE")
        return isDevice && IsSurface(*object.device);
    if (argument == "PORT")
        return !object.device || (isPort && !isExternal);
    if (argument == "DEVICE")
        return isExternal && (isDevice || isPort);
    return argument == "OBJECT";
}

std::string ObjectLines(const std::string& argument) {
    const Studio studio = ReadStudio();
    const ObjectNames names(studio);
    std::string lines;
    for (const NamedObject& object : names.All()) {
        const bool isClear = names.IsNamedByPath(object) && Escaped(object.path) == object.path;
        if (Takes(argument, object))
            lines += isClear ? Line(object.path, Filled(object.kind.c_str()))
                             : Line(std::to_string(object.id), Escaped(object.path));
    }
    return lines;
}

std::string ValueLines(const CLI::Option& option) {
    const std::string argument = option.get_name(true);
    if (argument == "FILE" || option.check_lname("to"))
        return Line("", "FILE");
    // A value that is one of a few: "TEXT:{one,other}".
    const std::string type = option.get_type_name();
    if (const std::size_t begin = type.find('{'); begin != std::string::npos) {
        std::istringstream values(type.substr(begin + 1, type.find('}') - begin - 1));
        std::string lines;
        for (std::string value; std::getline(values, value, ',');)
            lines += Line(value, option.get_description());
        return lines;
    }
    const bool isObject =
        argument == "OBJECT" || argument == "SURFACE" || argument == "PORT" || argument == "DEVICE";
    return isObject ? ObjectLines(argument) : "";
}

/// Where a command line stands behind some words.
struct Place {
    CLI::App* app;
    const CLI::Option* open = nullptr; ///< an option whose value comes next
    std::size_t arguments = 0;         ///< how many stand there already
};

Place PlaceBehind(CLI::App& program, const std::vector<std::string>& words) {
    Place place{&program};
    for (const std::string& word : words) {
        if (place.open)
            place.open = nullptr;
        else if (IsOption(word)) {
            const CLI::Option* option = place.app->get_option_no_throw(word);
            place.open = option && option->get_items_expected_max() > 0 ? option : nullptr;
        } else if (CLI::App* command = CommandNamed(*place.app, word))
            place.app = command;
        else
            ++place.arguments;
    }
    return place;
}

std::string ArgumentLines(const Place& place) {
    const auto arguments =
        place.app->get_options([](const CLI::Option* option) { return option->get_positional(); });
    return place.arguments < arguments.size() ? ValueLines(*arguments[place.arguments]) : "";
}

} // namespace

std::string Completions(CLI::App& program, std::vector<std::string> words) {
    const std::string last = words.empty() ? "" : words.back();
    if (!words.empty())
        words.pop_back();
    const bool isHelp = !words.empty() && words.front() == "help";
    if (isHelp)
        words.erase(words.begin());
    const Place place = PlaceBehind(program, words);
    if (place.open)
        return ValueLines(*place.open);
    if (!last.empty() && last.front() == '-')
        return OptionLines(*place.app);
    return isHelp || !CommandsOf(*place.app).empty() ? CommandLines(*place.app)
                                                     : ArgumentLines(place);
}

} // namespace MidiSetup
