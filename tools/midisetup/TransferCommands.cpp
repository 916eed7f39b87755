#include "tools/midisetup/Commands.h"
#include "tools/midisetup/Failure.h"
#include "tools/midisetup/Import.h"
#include "tools/midisetup/Output.h"
#include "tools/midisetup/SafeFile.h"

#include <CoreMIDI/MIDIDatabase.h>

#include <filesystem>
#include <iostream>
#include <optional>

namespace MidiSetup {

namespace {

/// A studio of 1,000 surfaces takes less than one.
constexpr std::size_t kMostBytes = std::size_t{64} << 20U;

struct ExportOptions {
    std::string file = "-";
};

struct ImportOptions {
    std::string file;
    bool yes = false;
};

/// The database and the files that SQLite keeps beside it are not for writing over.
void RefuseDatabase(const std::string& file) {
    const Text path(KestrinMIDICopyDatabasePath());
    const std::string database = path ? MidiObject::FromText(path.Get()) : "";
    for (const char* const ending : {"", "-wal", "-shm"}) {
        std::error_code error;
        if (std::filesystem::weakly_canonical(file, error) ==
                std::filesystem::weakly_canonical(database + ending, error) ||
            std::filesystem::equivalent(file, database + ending, error))
            throw Failure(Printable(file) + " is the MIDI database itself; export to another file");
    }
}

int Export(const ExportOptions& options) {
    const std::string text = DocumentText(StudioToJson(ReadStudio()));
    if (options.file == "-") {
        std::cout << text;
        return kExitDone;
    }
    RefuseDatabase(options.file);
    WriteSafely(options.file, text);
    return kExitDone;
}

bool Confirmed() {
    std::cout << "Make these changes? [y/N] " << std::flush;
    std::string answer;
    std::getline(std::cin, answer);
    return answer == "y" || answer == "Y" || answer == "yes";
}

std::string LinesOf(const ImportPlan& plan) {
    std::string lines;
    for (const Change& change : plan.changes)
        lines += "  " + change.description + "\n";
    return lines;
}

/// Makes the changes that a person saw in `shown`, or whatever they are where nobody was asked.
void Apply(const Json& document, const std::optional<std::string>& shown) {
    const Studio studio = ReadStudio();
    const ObjectNames names(studio);
    const ImportPlan plan = PlanImport(document, studio, names);
    if (shown && *shown != LinesOf(plan))
        throw Failure("the studio was changed meanwhile, so that nothing was brought in; import "
                      "again to see what would change now");
    for (const Change& change : plan.changes)
        change.apply();
}

/// Shows what would change, and answers it.
std::string Show(const Json& document) {
    const Studio studio = ReadStudio();
    const ObjectNames names(studio);
    const ImportPlan plan = PlanImport(document, studio, names);
    for (const std::string& note : plan.notes)
        std::cerr << "midisetup: " << note << "\n";
    std::cout << (plan.changes.empty() ? "There is nothing to change.\n" : LinesOf(plan));
    return LinesOf(plan);
}

int Import(const ImportOptions& options) {
    const Json document = ParseDocument(ReadAtMost(options.file, kMostBytes));
    const std::string shown = Show(document);
    if (shown.empty())
        return kExitDone;
    if (!options.yes && !Confirmed())
        throw Failure("nothing was changed");
    return InOneChange([&] {
        Apply(document, options.yes ? std::nullopt : std::optional(shown));
        return std::string();
    });
}

} // namespace

void AddTransferCommands(CLI::App& program, Action& chosen) {
    CLI::App* exporting = program.add_subcommand(
        "export", "Write all devices, ports, cables and settings as one JSON document");
    auto exportOptions = OptionsFor(exporting, chosen, Export);
    exporting->add_option("FILE", exportOptions->file, "Where to; - is standard output")
        ->capture_default_str();

    CLI::App* importing = program.add_subcommand("import", "Bring in a document that export wrote");
    Explain(
        importing,
        "Shows what would change, and asks. Objects that the document does not mention "
        "stay as\nthey are; those that it does get exactly its properties. All is brought in, or "
        "nothing.");
    auto importOptions = OptionsFor(importing, chosen, Import);
    importing->add_option("FILE", importOptions->file, "The document; - is standard input")
        ->required();
    importing->add_flag("-y,--yes", importOptions->yes, "Do not ask");
}

} // namespace MidiSetup
