#include "tests/support/RecordingLog.h"

#include "Diagnostics/Failure.h"

#include <cstdarg>
#include <cstdio>

namespace {

std::vector<std::string> gLines;

} // namespace

const std::vector<std::string>& RecordingLog::Lines() {
    return gLines;
}

void RecordingLog::Clear() {
    gLines.clear();
}

void Log(const char* format, ...) {
    char line[1024];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(line, sizeof line, format, arguments);
    va_end(arguments);
    gLines.emplace_back(line);
}
