#include "Diagnostics/Failure.h"

#include <cstdio>

namespace Kestrin {

namespace {

constexpr int kFrameworkFault = -50;

template <typename... Arguments>
void Report(const char* format, Arguments... arguments) {
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-security"
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
    std::printf(format, arguments...);
    std::fflush(stdout);
    Log(format, arguments...);
#pragma GCC diagnostic pop
}

} // namespace

void FailString(const char* errorType, const char* file, int line) {
    Report("FailString %s at file:%s line:%d\n", errorType, file, line);
    throw kFrameworkFault;
}

void FailNILError(const char* file, int line) {
    Report("FailNIL, file:%s line:%d\n", file, line);
    throw kFrameworkFault;
}

void FailOSError(int status, const char* file, int line) {
    Report("OSStatus error %08X, file:%s line:%d\n", static_cast<unsigned>(status), file, line);
    throw status;
}

} // namespace Kestrin
