#pragma once

#include <gtest/gtest.h>

#include <string>
#include <utility>

/// Catches what the process writes to standard output, from construction to Text().
class CapturedOutput {
public:
    CapturedOutput() { testing::internal::CaptureStdout(); }
    ~CapturedOutput() { Text(); }
    CapturedOutput(const CapturedOutput&) = delete;
    CapturedOutput& operator=(const CapturedOutput&) = delete;

    /// Ends the capture and returns what was written; later calls return the same.
    const std::string& Text() {
        if (std::exchange(fIsOpen, false))
            fText = testing::internal::GetCapturedStdout();
        return fText;
    }

private:
    bool fIsOpen = true;
    std::string fText;
};
