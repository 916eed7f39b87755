#pragma once

#include <functional>
#include <string>

namespace MidiSetup {

/// Runs `change` so that no other process changes anything between what it reads and what it
/// stores, and prints what it answers once all is stored. What throws stores nothing. Throws
/// Failure.
int InOneChange(const std::function<std::string()>& change);

} // namespace MidiSetup
