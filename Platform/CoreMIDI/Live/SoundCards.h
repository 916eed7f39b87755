#pragma once

#include "Platform/CoreMIDI/Live/SequencerSnapshot.h"

#include <filesystem>

namespace KestrinMIDI {

/// Reads what the system tells of a sound card. Nothing for one that is gone, also if it went while
/// it was read.
std::optional<SoundCard> ReadSoundCard(int number);

/// The USB device whose interface the sysfs folder is or lies in; nothing where there is none.
/// `folder` has no symbolic links.
std::optional<UsbUnit> UsbUnitAbove(const std::filesystem::path& folder);

} // namespace KestrinMIDI
