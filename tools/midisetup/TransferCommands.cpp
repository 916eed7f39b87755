#include "tools/messages/Messages.h"
#include "tools/messages/ServiceMessages.h"
#include "tools/midisetup/Ardour.h"
#include "tools/midisetup/Commands.h"
#include "tools/midisetup/Failure.h"
#include "tools/midisetup/Import.h"
#include "tools/midisetup/Output.h"
#include "tools/midisetup/SafeFile.h"
#include "tools/midisetup/UdevRules.h"

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
    bool udev = false;
    std::optional<SInt32> ardourGroup;
    std::string folder;
};

struct ImportOptions {
    std::string file;
    bool yes = false;
};

/// The database and the files that SQLite keeps beside it are not for writing over.
void RefuseDatabase(const std::string& file) {
    const std::string database = DatabasePath();
    for (const char* const ending : {"", "-wal", "-shm"}) {
        std::error_code error;
        if (std::filesystem::weakly_canonical(file, error) ==
                std::filesystem::weakly_canonical(database + ending, error) ||
            std::filesystem::equivalent(file, database + ending, error))
            throw Failure(
                Message("%1 is the MIDI database itself; export to another file", Printable(file)));
    }
}

/// Describes a group where Ardour looks for it.
int ExportForArdour(SInt32 group, const std::string& wantedFolder) {
    RequireDatabase();
    const ArdourDevice device = ArdourDeviceOf(group);
    const auto folder = wantedFolder.empty() ? ArdourDeviceFolder()
                                             : std::optional<std::filesystem::path>(wantedFolder);
    if (!folder)
        throw Failure(
            Message("this user has no Ardour configuration folder yet; start Ardour once, or name "
                    "a folder with --to"));
    std::error_code error;
    std::filesystem::create_directories(*folder, error);
    if (error)
        throw Failure(
            Message("cannot make the folder %1: %2", Printable(folder->string()), error.message()));
    const std::filesystem::path file = *folder / ("surfaces-" + std::to_string(group) + ".device");
    WriteSafely(file.string(), ArdourDeviceText(device));
    std::cout << Message("Wrote %1. In Ardour, choose the device \"%2\" of the Mackie control "
                         "surface.",
                         Printable(file.string()), device.name)
              << "\n";
    return kExitDone;
}

std::string ExportedText(const ExportOptions& options) {
    if (!options.udev)
        return DocumentText(StudioToJson(ReadStudio()));
    RequireDatabase();
    return UdevRulesFor(PluggedCards());
}

int Export(const ExportOptions& options) {
    if (options.ardourGroup)
        return ExportForArdour(*options.ardourGroup, options.folder);
    const std::string text = ExportedText(options);
    if (options.file == "-") {
        std::cout << text;
        return kExitDone;
    }
    RefuseDatabase(options.file);
    WriteSafely(options.file, text);
    return kExitDone;
}

bool Confirmed() {
    std::cout << Message("Make these changes? [y/N]") << " " << std::flush;
    std::string answer;
    std::getline(std::cin, answer);
    answer = LowerCase(answer);
    // The letter and the word that the question leads to expect, and English ones.
    return answer == "y" || answer == "yes" || answer == Message("y") || answer == Message("yes");
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
        throw Failure(
            Message("the studio was changed meanwhile, so that nothing was brought in; import "
                    "again to see what would change now"));
    for (const Change& change : plan.changes)
        change.apply();
}

/// Shows what would change, and answers it.
std::string Show(const Json& document) {
    const MIDIReading reading;
    const Studio studio = ReadStudio();
    const ObjectNames names(studio);
    const ImportPlan plan = PlanImport(document, studio, names);
    for (const std::string& note : plan.notes)
        std::cerr << "midisetup: " << note << "\n";
    std::cout << (plan.changes.empty() ? Message("There is nothing to change.") + "\n"
                                       : LinesOf(plan));
    return LinesOf(plan);
}

int Import(const ImportOptions& options) {
    const Json document = ParseDocument(ReadAtMost(options.file, kMostBytes));
    const std::string shown = Show(document);
    if (shown.empty())
        return kExitDone;
    if (!options.yes && !Confirmed())
        throw Failure(Message("nothing was changed"));
    return InOneChange([&] {
        Apply(document, options.yes ? std::nullopt : std::optional(shown));
        return std::string();
    });
}

} // namespace

void AddTransferCommands(CLI::App& program, Action& chosen) {
    CLI::App* exporting = program.add_subcommand(
        "export", Message("Write all devices, ports, cables and settings as one JSON document"));
    auto exportOptions = OptionsForReading(exporting, chosen, Export);
    CLI::Option* file =
        exporting
            ->add_option("FILE", exportOptions->file, Message("Where to; - is standard output"))
            ->capture_default_str();

    CLI::Option* udev = exporting->add_flag(
        "--udev", exportOptions->udev,
        Message("Write udev rules instead that give each plugged USB unit a stable card ID"));
    CLI::Option* ardour =
        exporting
            ->add_option("--ardour", exportOptions->ardourGroup,
                         Message("Write the description of this group that Ardour reads instead"))
            ->excludes(file)
            ->excludes(udev);
    exporting
        ->add_option("--to", exportOptions->folder,
                     Message("The folder for it, if not that of the newest Ardour of this user"))
        ->needs(ardour);

    CLI::App* importing =
        program.add_subcommand("import", Message("Bring in a document that export wrote"));
    Explain(importing,
            Message("Shows what would change, and asks. Objects that the document does not mention "
                    "stay as\nthey are; those that it does get exactly its properties. All is "
                    "brought in, or "
                    "nothing."));
    auto importOptions = OptionsFor(importing, chosen, Import);
    importing->add_option("FILE", importOptions->file, Message("The document; - is standard input"))
        ->required();
    importing->add_flag("-y,--yes", importOptions->yes, Message("Do not ask"));
}

} // namespace MidiSetup
