#pragma once

#include <string>

namespace MidiSetup {

/// Replaces a file by one that holds `text`. Until that stands whole on the disk the older file
/// stays as it was. What is no regular file (a pipe, a device) is written to. Throws Failure.
void WriteSafely(const std::string& file, const std::string& text);

/// The whole file, or standard input for "-". Throws Failure, also for more than `most` bytes.
std::string ReadAtMost(const std::string& file, std::size_t most);

} // namespace MidiSetup
