#pragma once

#include <string>
#include <vector>

namespace MidiSetup {

/// Does what the words behind the program's name ask for, on the process's standard streams, and
/// answers the exit code.
int RunCommandLine(const std::vector<std::string>& words);

} // namespace MidiSetup
