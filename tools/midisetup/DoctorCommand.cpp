#include "tools/midisetup/Commands.h"
#include "tools/midisetup/Diagnosis.h"
#include "tools/midisetup/Failure.h"
#include "tools/midisetup/Json.h"
#include "tools/midisetup/Output.h"

#include <CoreMIDI/MIDIDatabase.h>

#include <iostream>

namespace MidiSetup {

namespace {

struct DoctorOptions {
    bool repair = false;
    bool asJson = false;
};

/// All that was found, and the exit code that it makes.
struct Findings {
    std::vector<Problem> problems;
    std::vector<Problem> notes;
    int exitCode = kExitDone;
};

void Print(const char* title, const std::vector<Problem>& problems) {
    for (const Problem& problem : problems)
        std::cout << Strong(title) << problem.what << "\n  " << problem.remedy << "\n";
}

Json ToJson(const std::vector<Problem>& problems) {
    Json list = Json::array();
    for (const Problem& problem : problems)
        list.push_back({{"what", problem.what}, {"remedy", problem.remedy}});
    return list;
}

void Append(std::vector<Problem>& problems, std::vector<Problem> more) {
    problems.insert(problems.end(), more.begin(), more.end());
}

std::string TextOrEmpty(CFStringRef owned) {
    const Text text(owned);
    return text ? MidiObject::FromText(text.Get()) : "";
}

std::string RemedyFor(KestrinMIDIDatabaseState state) {
    switch (state) {
    case kKestrinMIDIDatabaseNoFolder:
        return "Make the folder, or name another file with KESTRIN_MIDI_DATABASE.";
    case kKestrinMIDIDatabaseReadOnly:
        return "Make the file and its folder writable for you.";
    case kKestrinMIDIDatabaseNewer:
        return "Install the newer version of this software; the file was left as it is.";
    case kKestrinMIDIDatabaseForeign:
        return "Name another file with KESTRIN_MIDI_DATABASE; this one was left as it is.";
    case kKestrinMIDIDatabaseLocked:
        return "End the program that keeps it locked, then try again.";
    case kKestrinMIDIDatabaseUnreachable:
        return "Make room on the disk, or look after its health.";
    default:
        return "\"midisetup doctor --repair\" sets the file aside and saves what can be read.";
    }
}

std::vector<Problem> FindDatabaseProblems() {
    const KestrinMIDIDatabaseState state = KestrinMIDIGetDatabaseState();
    if (state != kKestrinMIDIDatabaseReady)
        return {{Printable(TextOrEmpty(KestrinMIDICopyDatabaseProblem())), RemedyFor(state)}};
    const std::string damage = TextOrEmpty(KestrinMIDICopyDatabaseDamage());
    if (damage.empty())
        return {};
    return {
        {"The database is damaged: " + Printable(damage), RemedyFor(kKestrinMIDIDatabaseDamaged)}};
}

std::vector<Problem> FindSequencerProblems() {
    switch (KestrinMIDIGetSequencerState()) {
    case kKestrinMIDISequencerMissing:
        return {{"This machine has no MIDI sequencer, so that plugged devices cannot be seen.",
                 "Load the kernel's: sudo modprobe snd-seq"}};
    case kKestrinMIDISequencerNotPermitted:
        return {{"You may not open the MIDI sequencer, so that plugged devices cannot be seen.",
                 "Join the group of /dev/snd/seq, most often \"audio\", and log in anew: "
                 "sudo usermod -aG audio \"$USER\""}};
    default:
        return {};
    }
}

void ExamineStudio(Findings& findings) {
    const Studio studio = ReadStudio();
    const ObjectNames names(studio);
    std::vector<Problem> problems = FindLooseCables(names);
    Append(problems, FindUnreachableSurfaces(studio, names));
    Append(problems, FindWrongSettings(names));
    Append(problems, FindSharedPlaces(studio, names));
    if (!problems.empty())
        findings.exitCode = kExitFailed;
    Append(findings.problems, problems);
    Append(findings.notes, FindUnplacedSurfaces(studio, names));
    Append(findings.notes, FindOddModels(studio, names));
    Append(findings.notes, FindUnitsWithoutSerial(studio));
}

Findings Examine() {
    if (auto problems = FindDatabaseProblems(); !problems.empty())
        return {problems, {}, kExitDatabase};
    Findings findings{FindSequencerProblems(), {}, kExitDone};
    if (!findings.problems.empty())
        findings.exitCode = kExitSequencer;
    ExamineStudio(findings);
    return findings;
}

void Repair() {
    CFStringRef savedAs = nullptr;
    KestrinMIDIRepairCounts counts{};
    const OSStatus status = KestrinMIDIRepairDatabase(&savedAs, &counts);
    if (status == kMIDINotPermitted) {
        std::cout << "The database needs no repair.\n";
        return;
    }
    Check(status, "set the damaged database aside");
    std::cout << "The damaged database was set aside as " << Printable(TextOrEmpty(savedAs))
              << ".\nSaved into a new one: " << counts.objects << " objects and "
              << counts.properties << " properties; " << counts.lost << " made no sense, "
              << counts.unreadable << " objects could not be read whole.\n";
}

int Doctor(const DoctorOptions& options) {
    const std::string path = TextOrEmpty(KestrinMIDICopyDatabasePath());
    if (!options.asJson)
        std::cout << "Database: " << Printable(path) << "\n";
    if (options.repair)
        Repair();
    const Findings findings = Examine();
    if (options.asJson) {
        std::cout << DocumentText({{"database", path},
                                   {"problems", ToJson(findings.problems)},
                                   {"notes", ToJson(findings.notes)}});
        return findings.exitCode;
    }
    Print("Problem: ", findings.problems);
    Print("Note: ", findings.notes);
    if (findings.problems.empty())
        std::cout << "No problems were found.\n";
    return findings.exitCode;
}

} // namespace

void AddDoctorCommand(CLI::App& program, Action& chosen) {
    CLI::App* doctor =
        program.add_subcommand("doctor", "Look for problems, explain them and tell what to do");
    Explain(doctor,
            "Ends with 0 when all is well, 1 for problems of the studio, 3 when the database "
            "cannot be\nused, 4 when only the sequencer cannot.");
    auto options = OptionsFor(doctor, chosen, Doctor);
    auto* asJson = doctor->add_flag("--json", options->asJson, "Print JSON");
    doctor
        ->add_flag("--repair", options->repair,
                   "Set a damaged database aside and save what can be read into a new one")
        ->excludes(asJson);
}

} // namespace MidiSetup
