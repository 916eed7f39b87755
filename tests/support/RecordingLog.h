#pragma once

#include <string>
#include <vector>

/// The Log of the test programs: keeps every report of the framework, one string each.
namespace RecordingLog {

const std::vector<std::string>& Lines();
void Clear();

} // namespace RecordingLog
