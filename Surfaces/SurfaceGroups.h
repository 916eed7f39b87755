#pragma once

#include "Surfaces/MidiDevice.h"

#include <cstddef>
#include <span>
#include <vector>

/// The group settings of the surfaces: two integers on each surface's MIDI object, for any program
/// to read with a call of the MIDI service.

/// The property keys, as C strings, so that each reader makes its own text object of them.
inline constexpr char kGroupIDKey[] = "com_velt_sorvex_control_surface_groupid";
inline constexpr char kGroupPositionKey[] = "com_velt_sorvex_control_surface_grouppos";

/// The range in which both settings are edited.
inline constexpr SInt32 kFirstGroupSetting = 0;
inline constexpr SInt32 kLastGroupSetting = 127;

/// The first position, counted up from the record's own, that no other record of its group has.
/// From kLastGroupSetting on, and below zero, it is kLastGroupSetting, taken or not. `index` is a
/// valid index into `devices`.
SInt32 FreeGroupPosition(const std::vector<MidiDevice>& devices, std::size_t index);

/// One of the settings: where it stands, and what is special about it.
struct SurfaceSetting {
    const char* key;           ///< of the property
    SInt32 MidiDevice::*value; ///< its place in a record

    /// The place in a record of what was entered for it when another surface is chosen.
    /// Deliberately crosswise: mixers in use rely on what switching has always stored.
    SInt32 MidiDevice::*valueOnSwitch;

    /// The place in a record of its default, which a surface without the property gets. Null: 0.
    SInt32 MidiDevice::*defaultValue = nullptr;

    /// What is shown for the record at an index. Null: its value.
    SInt32 (*shown)(const std::vector<MidiDevice>& devices, std::size_t index) = nullptr;

    /// The range in which it is edited.
    SInt32 first = kFirstGroupSetting;
    SInt32 last = kLastGroupSetting;

    SInt32 Shown(const std::vector<MidiDevice>& devices, std::size_t index) const {
        return shown != nullptr ? shown(devices, index) : devices[index].*value;
    }
};

inline constexpr SurfaceSetting kGroupPositionSetting{.key = kGroupPositionKey,
                                                      .value = &MidiDevice::groupPosition,
                                                      .valueOnSwitch = &MidiDevice::groupID,
                                                      .defaultValue = &MidiDevice::uniqueID,
                                                      .shown = FreeGroupPosition};
inline constexpr SurfaceSetting kGroupSetting{
    .key = kGroupIDKey, .value = &MidiDevice::groupID, .valueOnSwitch = &MidiDevice::groupPosition};

/// All of them, in the order in which they are read and written.
inline constexpr const SurfaceSetting* kSurfaceSettings[] = {&kGroupPositionSetting,
                                                             &kGroupSetting};

/// Reads `device`'s settings from the object that carries them. A setting that the object lacks is
/// its default in the record; answers whether it has them all.
bool ReadGroupSettings(MIDIObjectRef object, MidiDevice& device);

/// Reads the settings of all records anew and stores the default of each that is lacking, together
/// in one change. Where that cannot be stored the status tells why, and nothing is.
OSStatus StoreGroupDefaults(std::span<MidiDevice> devices);

/// Gives every record in turn its free position; records before it take part with their new one.
/// Writes nothing to the MIDI objects.
void NormaliseGroupPositions(std::vector<MidiDevice>& devices);

/// Writes all settings of the records, in order, to the MIDI objects, up to the first record whose
/// object is gone: all of these or, where the answer is not 0, none.
OSStatus WriteGroupSettings(const std::vector<MidiDevice>& devices);
