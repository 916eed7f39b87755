#pragma once

#include "Platform/CoreMIDI/Live/SequencerSnapshot.h"
#include "Platform/CoreMIDI/Store/SQLite.h"
#include "tests/support/TestStudio.h"

#include <CoreMIDI/MIDIDatabase.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

using namespace KestrinMIDI;

/// Gives each case a database file of its own and a sequencer that shows what the case plugs in.
class MidiTest : public testing::Test, protected TestStudio {
protected:
    MidiTest();

    /// Another file from the next call on.
    static void Use(const std::filesystem::path& file);
    /// Changes what is plugged in, as the running program notices it.
    static void PlugIn(SequencerSnapshot snapshot);
    /// Does something at the moment in which the service looks what is plugged in, once.
    static void AtTheNextLook(std::function<void()> work);

    /// Opens the file behind the service's back; the service is closed before.
    ConnectionHolder OpenFile() const;

    /// Runs `work` in a process of its own, which has nothing open. It ends with 0 when no
    /// expectation failed.
    static pid_t Start(const std::function<void()>& work);
    /// Waits for the exit code of a process; that of a killed one is the signal, negative.
    static int End(pid_t child);

    const std::filesystem::path fFile = DatabasePath();
};

// Plain values for the service's answers. What can't be had is "(status)" or the status.

std::string StringOf(MIDIObjectRef object, CFStringRef key);
std::string NameOf(MIDIObjectRef object);
SInt32 IntegerOf(MIDIObjectRef object, CFStringRef key);
/// The text of a string that the caller was given, which is released.
std::string TextOf(CFStringRef owned);
std::vector<std::string> SourceNames();
std::vector<std::string> DeviceNames();

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
