#include "tools/midisetup/Usage.h"

#include "tools/messages/Messages.h"
#include "tools/midisetup/ObjectNaming.h"
#include "tools/midisetup/Output.h"

#include <algorithm>
#include <optional>
#include <string_view>

namespace MidiSetup {

std::vector<CLI::App*> CommandsOf(CLI::App& app) {
    return app.get_subcommands([](const CLI::App*) { return true; });
}

CLI::App* CommandNamed(CLI::App& app, const std::string& name) {
    const auto found =
        app.get_subcommands([&](const CLI::App* command) { return command->get_name() == name; });
    return found.empty() ? nullptr : found.front();
}

bool IsOption(const std::string& word) {
    return word.size() > 1 && word[0] == '-' && (word[1] < '0' || word[1] > '9');
}

namespace {

/// "midisetup add external".
std::string FullName(const CLI::App& app) {
    return (app.get_parent() != nullptr ? FullName(*app.get_parent()) + " " : "") + app.get_name();
}

std::string CommandList(CLI::App& app) {
    std::string list;
    for (const CLI::App* command : CommandsOf(app))
        list += (list.empty() ? "" : ", ") + command->get_name();
    return list;
}

std::string UnknownCommand(CLI::App& app, const std::string& word) {
    std::string similar;
    for (const CLI::App* command : CommandsOf(app)) {
        const std::string& name = command->get_name();
        if (IsSimilar(LowerCase(word), name))
            similar = similar.empty() ? Quoted(name) : Message("%1 or %2", similar, Quoted(name));
    }
    return (similar.empty() ? Message("%1 has no command %2", FullName(app), Quoted(word))
                            : Message("%1 has no command %2; did you mean %3", FullName(app),
                                      Quoted(word), similar)) +
           "\n" + Message("Its commands are: %1", CommandList(app));
}

/// The names of the commands that take an option.
std::string TakersOf(CLI::App& app, const std::string& option) {
    std::string takers;
    for (CLI::App* command : CommandsOf(app)) {
        if (command->get_option_no_throw(option) != nullptr)
            takers += (takers.empty() ? "" : ", ") + FullName(*command);
        const std::string deeper = TakersOf(*command, option);
        takers += (takers.empty() || deeper.empty() ? "" : ", ") + deeper;
    }
    return takers;
}

std::string MisplacedOption(CLI::App& program, const CLI::App& app, const std::string& option) {
    const std::string takers = TakersOf(program, option);
    return takers.empty() ? Message("%1 takes no option %2", FullName(app), Quoted(option))
                          : Message("%1 takes no option %2; it stands behind: %3", FullName(app),
                                    Quoted(option), takers);
}

std::string UsageLine(CLI::App& command) {
    std::string usage = FullName(command);
    for (const CLI::Option* option : command.get_options()) {
        const bool isArgument = option->get_positional();
        const std::string name = option->get_name(isArgument, !isArgument);
        if (name.find("--help") == std::string::npos)
            usage += option->get_required() ? " " + name : " [" + name + "]";
    }
    return Message("Usage: %1", usage);
}

// What the parser says of a command line, in English.
constexpr const char* kParserSentences[] = {
    Marked("%1: Value %2 not in range %3 to %4"),
    Marked("%1: At Most %2 required but received %3"),
    Marked("%1: %2 required %3 missing"),
    Marked("%1: %2 not in {%3}"),
    Marked("Could not convert: %1 = %2"),
    Marked("%1 was given a disallowed flag override"),
    Marked("%1 requires %2"),
    Marked("%1 excludes %2"),
    Marked("%1 is required"),
};

/// What stands in the places of the pattern, which are in order, where `text` is made by it.
std::optional<std::vector<std::string>> PartsBy(std::string_view pattern, std::string_view text) {
    std::vector<std::string> parts;
    while (true) {
        const std::string_view before = pattern.substr(0, pattern.find('%'));
        if (!text.starts_with(before))
            return std::nullopt;
        text.remove_prefix(before.size());
        pattern.remove_prefix(before.size());
        if (pattern.empty())
            return text.empty() ? std::optional(parts) : std::nullopt;
        pattern.remove_prefix(2);
        const std::string_view behind = pattern.substr(0, pattern.find('%'));
        const std::size_t end = behind.empty() ? text.size() : text.find(behind);
        parts.emplace_back(text.substr(0, end));
        text.remove_prefix(std::min(end, text.size()));
    }
}

/// The parser's sentence in the user's language.
std::string Retold(const std::string& sentence) {
    for (const char* const pattern : kParserSentences) {
        if (const auto parts = PartsBy(pattern, sentence))
            return Filled(pattern, *parts);
    }
    return sentence;
}

/// What the parser finds wrong; it lists superfluous words from the last to the first.
std::string Complaint(const CLI::App& command, const CLI::ParseError& error) {
    if (dynamic_cast<const CLI::ExtrasError*>(&error) == nullptr)
        return Retold(error.what());
    std::string superfluous;
    for (const std::string& word : command.remaining())
        superfluous += " " + word;
    return Message("not expected:%1", superfluous);
}

} // namespace

HelpFormatter::HelpFormatter() {
    label("Usage", Message("Usage"));
    label("OPTIONS", Message("OPTIONS"));
    label("SUBCOMMAND", Message("SUBCOMMAND"));
    label("Positionals", Message("Positionals"));
    label("REQUIRED", Message("REQUIRED"));
    label("Needs", Message("Needs"));
    label("Excludes", Message("Excludes"));
    label("TEXT", Message("TEXT"));
    label("INT", Message("INT"));
}

std::string HelpFormatter::make_group(std::string group, bool isPositional,
                                      std::vector<const CLI::Option*> options) const {
    return Formatter::make_group(group == "Options" ? Message("Options") : group, isPositional,
                                 options);
}

std::string HelpFormatter::make_option(const CLI::Option* option, bool isPositional) const {
    const std::string name =
        "  " + make_option_name(option, isPositional) + make_option_opts(option);
    const std::size_t columns = Columns(name);
    const std::size_t width = get_column_width();
    return name +
           (columns < width ? std::string(width - columns, ' ') : "\n" + std::string(width, ' ')) +
           make_option_desc(option) + "\n";
}

void Restrict(CLI::Option* option, int first, int last) {
    CLI::Range range(first, last);
    range.description(Message("INT in [%1 - %2]", first, last));
    option->type_name(Message("INT"))->check(range);
}

std::string UsageProblem(CLI::App& program, const std::vector<std::string>& words,
                         const CLI::ParseError& error) {
    CLI::App* app = &program;
    auto word = words.begin();
    for (; !CommandsOf(*app).empty(); ++word) {
        if (word == words.end())
            return Message("%1 needs a command: %2", FullName(*app), CommandList(*app));
        if (IsOption(*word))
            return MisplacedOption(program, *app, *word);
        CLI::App* const command = CommandNamed(*app, *word);
        if (command == nullptr)
            return UnknownCommand(*app, *word);
        app = command;
    }
    for (; word != words.end(); ++word) {
        const std::string option = word->substr(0, word->find('='));
        if (IsOption(option) && app->get_option_no_throw(option) == nullptr)
            return MisplacedOption(program, *app, option);
    }
    return FullName(*app) + ": " + Printable(Complaint(*app, error)) + "\n" + UsageLine(*app);
}

} // namespace MidiSetup
