#pragma once

#include "Platform/CoreMIDI/Live/SequencerSnapshot.h"

#include <filesystem>
#include <map>

namespace KestrinMIDI {

/// Where each sound card sits in the system's tree of devices, by the name of its entry, "card3".
using CardPlaces = std::map<std::string, std::filesystem::path>;

CardPlaces PlacesOfCards();
std::string EntryName(int card);

/// Reads what the system tells of a sound card. Nothing for one that is gone, also if it went while
/// it was read.
std::optional<SoundCard> ReadSoundCard(int number);

/// The USB device whose interface the sysfs folder is or lies in; nothing where there is none.
/// `folder` has no symbolic links.
std::optional<UsbUnit> UsbUnitAbove(const std::filesystem::path& folder);

} // namespace KestrinMIDI
