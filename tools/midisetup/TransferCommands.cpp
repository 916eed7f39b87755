#include "tools/midisetup/Commands.h"
#include "tools/midisetup/Failure.h"
#include "tools/midisetup/Import.h"
#include "tools/midisetup/Output.h"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>

namespace MidiSetup {

namespace {

struct ExportOptions {
    std::string file = "-";
};

struct ImportOptions {
    std::string file;
    bool yes = false;
};

int Export(const ExportOptions& options) {
    const std::string text = DocumentText(StudioToJson(ReadStudio()));
    if (options.file == "-") {
        std::cout << text;
        return kExitDone;
    }
    std::ofstream file(options.file, std::ios::binary);
    file << text;
    file.close();
    if (!file)
        throw Failure("cannot write " + Printable(options.file));
    return kExitDone;
}

std::string ReadAll(const std::string& name) {
    std::ifstream file;
    if (name != "-") {
        file.open(name, std::ios::binary);
        if (!file || std::filesystem::is_directory(name))
            throw Failure("cannot read " + Printable(name));
    }
    // Unlike an iterator, the inserter does not let out what the stream's buffer throws.
    std::ostringstream text;
    text << (name == "-" ? std::cin : file).rdbuf();
    return text.str();
}

bool Confirmed() {
    std::cout << "Make these changes? [y/N] " << std::flush;
    std::string answer;
    std::getline(std::cin, answer);
    return answer == "y" || answer == "Y" || answer == "yes";
}

int Import(const ImportOptions& options) {
    const Json document = ParseDocument(ReadAll(options.file));
    const Studio studio = ReadStudio();
    const ObjectNames names(studio);
    const ImportPlan plan = PlanImport(document, studio, names);

    for (const std::string& note : plan.notes)
        std::cerr << "midisetup: " << note << "\n";
    for (const Change& change : plan.changes)
        std::cout << "  " << change.description << "\n";
    if (plan.changes.empty()) {
        std::cout << "There is nothing to change.\n";
        return kExitDone;
    }
    if (!options.yes && !Confirmed())
        throw Failure("nothing was changed");
    for (const Change& change : plan.changes)
        change.apply();
    return kExitDone;
}

} // namespace

void AddTransferCommands(CLI::App& program, Action& chosen) {
    CLI::App* exporting = program.add_subcommand(
        "export", "Write all devices, ports, cables and settings as one JSON document");
    auto exportOptions = OptionsFor(exporting, chosen, Export);
    exporting->add_option("FILE", exportOptions->file, "Where to; - is standard output")
        ->capture_default_str();

    CLI::App* importing = program.add_subcommand("import", "Bring in a document that export wrote");
    Explain(importing,
            "Shows what would change, and asks. Objects that the document does not mention "
            "stay as\nthey are; those that it does get exactly its properties.");
    auto importOptions = OptionsFor(importing, chosen, Import);
    importing->add_option("FILE", importOptions->file, "The document; - is standard input")
        ->required();
    importing->add_flag("-y,--yes", importOptions->yes, "Do not ask");
}

} // namespace MidiSetup
