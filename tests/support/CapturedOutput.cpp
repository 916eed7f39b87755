#include "tests/support/CapturedOutput.h"

#include <unistd.h>

#include <iostream>

CapturedOutput::CapturedOutput(std::FILE* stream)
    : fStream(stream)
    , fFile(std::tmpfile()) {
    std::cout.flush();
    std::fflush(fStream);
    fSavedDescriptor = dup(fileno(fStream));
    dup2(fileno(fFile), fileno(fStream));
}

CapturedOutput::~CapturedOutput() {
    Restore();
}

const std::string& CapturedOutput::Text() {
    Restore();
    return fText;
}

void CapturedOutput::Restore() {
    if (fFile == nullptr)
        return;
    std::cout.flush();
    std::fflush(fStream);
    dup2(fSavedDescriptor, fileno(fStream));
    close(fSavedDescriptor);
    std::rewind(fFile);
    char block[4096];
    for (std::size_t n; (n = std::fread(block, 1, sizeof block, fFile)) > 0;)
        fText.append(block, n);
    std::fclose(fFile);
    fFile = nullptr;
}
