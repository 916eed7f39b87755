#pragma once

#include <string>
#include <vector>

namespace KestrinMIDI {

/// The languages that the environment asks for, best first, each as the name of its localized
/// copies
/// ("fr_CH", then "fr"). English, whose copy is the plain one, ends the list and is not in it.
std::vector<std::string> UserLanguages();

} // namespace KestrinMIDI
