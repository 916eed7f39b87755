#pragma once

/// Receives the framework's reports, formatted as by printf. Every program that links the framework
/// supplies it; what it does with them is the program's choice.
void Log(const char* format, ...) __attribute__((format(printf, 1, 2)));

namespace Kestrin {

/// The three ways in which the framework reports a fault of its own. Each prints one line on
/// standard output, hands the same line to Log and throws a plain int. `file` is the name of the
/// module that failed ("Source/XML/XMLParser"), `line` the place within it that the fault is known
/// by.

/// Prints "FailString …" with the error type ("Kestrin" or a module's name); throws -50.
[[noreturn]] void FailString(const char* errorType, const char* file, int line);

/// Prints "FailNIL, …" for an object that could not be had; throws -50.
[[noreturn]] void FailNILError(const char* file, int line);

/// Prints "OSStatus error …" with the platform's status; throws that status.
[[noreturn]] void FailOSError(int status, const char* file, int line);

} // namespace Kestrin
