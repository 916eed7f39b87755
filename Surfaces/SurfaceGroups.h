#pragma once

#include "Surfaces/MidiDevice.h"

#include <cstddef>
#include <vector>

/// The group settings of the surfaces: two integers on each surface's MIDI object, for any program
/// to read with a call of the MIDI service.

/// The property keys, as C strings, so that each reader makes its own text object of them.
inline constexpr char kGroupIDKey[] = "com_velt_sorvex_control_surface_groupid";
inline constexpr char kGroupPositionKey[] = "com_velt_sorvex_control_surface_grouppos";

/// The range in which both settings are edited.
inline constexpr SInt32 kFirstGroupSetting = 0;
inline constexpr SInt32 kLastGroupSetting = 127;

/// Reads `device`'s settings from the object that carries them. A setting that the object lacks
/// gets its default (the position the record's unique ID, the group 0), which is stored there at
/// once.
void ReadGroupSettings(MIDIObjectRef object, MidiDevice& device);

/// The first position, counted up from the record's own, that no other record of its group has.
/// From kLastGroupSetting on, and below zero, it is kLastGroupSetting, taken or not. `index` is a
/// valid index into `devices`.
SInt32 FreeGroupPosition(const std::vector<MidiDevice>& devices, std::size_t index);

/// Gives every record in turn its free position; records before it take part with their new one.
/// Linear in the number of records. Writes nothing to the MIDI objects.
void NormaliseGroupPositions(std::vector<MidiDevice>& devices);

/// Keeps what was entered for a surface when another one is chosen: deliberately crosswise, the
/// position into the group and the group into the position.
void KeepSettingsOnSwitch(MidiDevice& device, SInt32 enteredGroup, SInt32 enteredPosition);

/// Keeps what was entered for a surface when the user confirms: each value in its own field.
void KeepSettingsOnConfirm(MidiDevice& device, SInt32 enteredGroup, SInt32 enteredPosition);

/// Writes both settings of every record, in order, to the MIDI objects. Ends at the first record
/// whose object is gone; a value that cannot be written is passed over.
void WriteGroupSettings(const std::vector<MidiDevice>& devices);
