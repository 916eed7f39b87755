#include "tools/messages/Messages.h"
#include "tools/messages/ServiceMessages.h"
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

void Print(const std::string& title, const std::vector<Problem>& problems) {
    for (const Problem& problem : problems)
        std::cout << Strong(title) << " " << problem.what << "\n  " << problem.remedy << "\n";
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

std::string RemedyFor(KestrinMIDIDatabaseState state) {
    switch (state) {
    case kKestrinMIDIDatabaseNoFolder:
        return Message("Make the folder, or name another file with KESTRIN_MIDI_DATABASE.");
    case kKestrinMIDIDatabaseReadOnly:
        return Message("Make the file and its folder writable for you.");
    case kKestrinMIDIDatabaseNewer:
        return Message("Install the newer version of this software; the file was left as it is.");
    case kKestrinMIDIDatabaseForeign:
        return Message("Name another file with KESTRIN_MIDI_DATABASE; this one was left as it is.");
    case kKestrinMIDIDatabaseLocked:
        return Message("End the program that keeps it locked, then try again.");
    case kKestrinMIDIDatabaseUnreachable:
        return Message("Make room on the disk, or look after its health.");
    default:
        return Message(
            "\"midisetup doctor --repair\" sets the file aside and saves what can be read.");
    }
}

std::vector<Problem> FindDatabaseProblems() {
    const KestrinMIDIDatabaseState state = KestrinMIDIGetDatabaseState();
    if (state != kKestrinMIDIDatabaseReady)
        return {{Printable(ServiceMessage(KestrinMIDICopyDatabaseProblem())), RemedyFor(state)}};
    const std::string damage = ServiceMessage(KestrinMIDICopyDatabaseDamage());
    if (damage.empty())
        return {};
    return {{Message("The database is damaged: %1", Printable(damage)),
             RemedyFor(kKestrinMIDIDatabaseDamaged)}};
}

std::vector<Problem> FindSequencerProblems() {
    switch (KestrinMIDIGetSequencerState()) {
    case kKestrinMIDISequencerMissing:
        return {
            {Message("This machine has no MIDI sequencer, so that plugged devices cannot be seen."),
             Message("Load the kernel's: %1", "sudo modprobe snd-seq")}};
    case kKestrinMIDISequencerNotPermitted:
        return {
            {Message(
                 "You may not open the MIDI sequencer, so that plugged devices cannot be seen."),
             Message("Join the group of /dev/snd/seq, most often \"audio\", and log in anew: %1",
                     "sudo usermod -aG audio \"$USER\"")}};
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
        std::cout << Message("The database needs no repair.") << "\n";
        return;
    }
    Check(status, Message("cannot set the damaged database aside"));
    std::cout << Message("The damaged database was set aside as %1.",
                         Printable(ServiceMessage(savedAs)))
              << "\n"
              << Message("Saved into a new one: %1 and %2.",
                         Counted("%1 object", "%1 objects", counts.objects),
                         Counted("%1 property", "%1 properties", counts.properties))
              << "\n"
              << Counted("%1 entry made no sense.", "%1 entries made no sense.", counts.lost)
              << "\n"
              << Counted("%1 object could not be read whole.",
                         "%1 objects could not be read whole.", counts.unreadable)
              << "\n";
}

int Doctor(const DoctorOptions& options) {
    const std::string path = DatabasePath();
    if (options.asJson)
        UseEnglish();
    else
        std::cout << Message("Database: %1", Printable(path)) << "\n";
    if (options.repair)
        Repair();
    const Findings findings = Examine();
    if (options.asJson) {
        std::cout << DocumentText({{"database", path},
                                   {"problems", ToJson(findings.problems)},
                                   {"notes", ToJson(findings.notes)}});
        return findings.exitCode;
    }
    Print(Message("Problem:"), findings.problems);
    Print(Message("Note:"), findings.notes);
    if (findings.problems.empty())
        std::cout << Message("No problems were found.") << "\n";
    return findings.exitCode;
}

} // namespace

void AddDoctorCommand(CLI::App& program, Action& chosen) {
    CLI::App* doctor = program.add_subcommand(
        "doctor", Message("Look for problems, explain them and tell what to do"));
    Explain(
        doctor,
        Message("Ends with 0 when all is well, 1 for problems of the studio, 3 when the database "
                "cannot be\nused, 4 when only the sequencer cannot."));
    auto options = OptionsFor(doctor, chosen, Doctor);
    auto* asJson = doctor->add_flag("--json", options->asJson, Message("Print JSON"));
    doctor
        ->add_flag("--repair", options->repair,
                   Message("Set a damaged database aside and save what can be read into a new one"))
        ->excludes(asJson);
}

} // namespace MidiSetup
