#pragma once

#include "tests/support/TestStudio.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

/// What a program did: its exit code and what it wrote.
struct ProgramRun {
    int exitCode;
    std::string output;
    std::string errors;
};

std::string ReadAll(const std::filesystem::path& path);

/// Runs a program to its end; `input` is its standard input. No argument contains a '.
ProgramRun RunProgram(const std::vector<std::string>& arguments, const std::string& input = "",
                      const std::string& program = MIDISETUP_PROGRAM);

inline constexpr int kFailed = 1;
inline constexpr int kUsage = 2;
inline constexpr int kDatabase = 3;

/// Each case has a database of its own, which the program and the test share.
class MidiSetup : public testing::Test {
protected:
    /// Runs a command that must succeed and answers its output.
    static std::string Do(const std::vector<std::string>& arguments, const std::string& input = "");

    /// Runs a command that must fail, with nothing on standard output, and answers its errors.
    static std::string Refused(const std::vector<std::string>& arguments, int exitCode = kFailed);

    static void AddBoxAndSurfaces();

    TestStudio fStudio;
};
