#include "tools/midisetup/Usage.h"

#include "tools/midisetup/ObjectNaming.h"
#include "tools/midisetup/Output.h"

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

std::string Quoted(const std::string& word) {
    return "\"" + Printable(word) + "\"";
}

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
        if (IsSimilar(LowerCase(word), command->get_name()))
            similar += (similar.empty() ? "; did you mean " : " or ") + Quoted(command->get_name());
    }
    return FullName(app) + " has no command " + Quoted(word) + similar +
           "\nIts commands are: " + CommandList(app);
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
    return FullName(app) + " takes no option " + Quoted(option) +
           (takers.empty() ? "" : "; it stands behind: " + takers);
}

std::string UsageLine(CLI::App& command) {
    std::string usage = "Usage: " + FullName(command);
    for (const CLI::Option* option : command.get_options()) {
        const bool isArgument = option->get_positional();
        const std::string name = option->get_name(isArgument, !isArgument);
        if (name.find("--help") == std::string::npos)
            usage += option->get_required() ? " " + name : " [" + name + "]";
    }
    return usage;
}

/// What CLI11 finds wrong; it lists superfluous words from the last to the first.
std::string Complaint(const CLI::App& command, const CLI::ParseError& error) {
    if (dynamic_cast<const CLI::ExtrasError*>(&error) == nullptr)
        return error.what();
    std::string complaint = "not expected:";
    for (const std::string& word : command.remaining())
        complaint += " " + word;
    return complaint;
}

} // namespace

std::string UsageProblem(CLI::App& program, const std::vector<std::string>& words,
                         const CLI::ParseError& error) {
    CLI::App* app = &program;
    auto word = words.begin();
    for (; !CommandsOf(*app).empty(); ++word) {
        if (word == words.end())
            return FullName(*app) + " needs a command: " + CommandList(*app);
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
