#pragma once

#include "Platform/CoreMIDI/SQLite.h"
#include "Platform/CoreMIDI/SequencerSnapshot.h"
#include "tests/support/TemporaryFolder.h"

#include <CoreMIDI/MIDIDatabase.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

/// Gives each case a database file of its own and a sequencer that shows what the case plugs in.
class MidiTest : public testing::Test {
protected:
    MidiTest();
    ~MidiTest() override;

    /// Another file from the next call on.
    void Use(const std::filesystem::path& file);
    /// Changes what is plugged in, as the running program notices it.
    void PlugIn(SequencerSnapshot snapshot);
    /// Runs SQL on the file behind the service's back; the service is closed before.
    void RunSQL(const std::string& sql);
    /// The first column of the first row, read behind the service's back.
    std::int64_t QueryFile(const std::string& sql);
    /// Runs `work` in a process of its own, which has nothing open; its result is the exit code.
    static int InChild(const std::function<int()>& work);

    TemporaryFolder fFolder;
    std::filesystem::path fFile;
};

// Plain values for the service's answers. What can't be had is empty, 0 or "(status)".

std::string StringOf(MIDIObjectRef object, CFStringRef key);
std::string NameOf(MIDIObjectRef object);
SInt32 IntegerOf(MIDIObjectRef object, CFStringRef key);
MIDIUniqueID UniqueIDOf(MIDIObjectRef object);
/// The text of a string that the caller was given, which is released.
std::string TextOf(CFStringRef owned);
std::vector<std::string> SourceNames();

/// An interface as a person adds it, with one entity of one source and one destination.
MIDIDeviceRef AddInterface(const char* name);
MIDIDeviceRef AddExternal(const char* name);

/// What the kernel tells of one unit of the model that most cases use.
struct UnitFacts {
    int card = 0;
    std::string serial;
    std::string path = "dummy_hcd.0-1";
    std::string product = "MCU Pro USB";
    std::string shortName = "MCU Pro USB";
    std::string manufacturer = "LOUD Technologies, Inc.";
    std::vector<std::string> ports = {"MCU Pro USB MIDI 1"};
};

/// A sequencer with System, Midi Through, its own client and these units.
SequencerSnapshot SequencerWith(const std::vector<UnitFacts>& units);
void AddProgram(SequencerSnapshot& snapshot, int client, const std::string& name,
                const std::string& port);
