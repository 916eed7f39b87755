#pragma once

#include <string>
#include <vector>

/// What a program did: its exit code and what it wrote.
struct ProgramRun {
    int exitCode = -1;
    std::string output;
    std::string errors;
};

/// Runs a program to its end with the environment of the test; `input` is its standard input.
ProgramRun RunProgram(const std::string& program, const std::vector<std::string>& arguments,
                      const std::string& input = "");
