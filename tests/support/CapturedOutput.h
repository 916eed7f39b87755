#pragma once

#include <cstdio>
#include <string>

/// Catches what the process writes to one of its standard streams, from construction to Text().
class CapturedOutput {
public:
    /// `stream` is stdout or stderr.
    explicit CapturedOutput(std::FILE* stream = stdout);
    ~CapturedOutput();
    CapturedOutput(const CapturedOutput&) = delete;
    CapturedOutput& operator=(const CapturedOutput&) = delete;

    /// Ends the capture and returns what was written; later calls return the same.
    const std::string& Text();

private:
    void Restore();

    std::FILE* fStream;
    std::FILE* fFile;
    int fSavedDescriptor;
    std::string fText;
};
