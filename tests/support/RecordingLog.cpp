#include "tests/support/RecordingLog.h"

#include "Diagnostics/Failure.h"

#include <cstdarg>
#include <cstdio>

namespace {

std::vector<std::string>& Store() {
    static std::vector<std::string> lines;
    return lines;
}

} // namespace

const std::vector<std::string>& RecordingLog::Lines() {
    return Store();
}

void RecordingLog::Clear() {
    Store().clear();
}

void Log(const char* format, ...) {
    char line[1024];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(line, sizeof line, format, arguments);
    va_end(arguments);
    Store().emplace_back(line);
}
