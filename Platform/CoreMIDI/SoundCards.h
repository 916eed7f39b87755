#pragma once

#include "Platform/CoreMIDI/SequencerSnapshot.h"

#include <filesystem>

/// Reads what the system tells of a sound card. What is missing, or gone by now, stays empty.
SoundCard ReadSoundCard(int number);

/// The USB device that the sysfs folder of an interface or a device lies in; nothing where there is
/// none. `folder` has no symbolic links.
std::optional<UsbUnit> UsbUnitAbove(const std::filesystem::path& folder);
