#pragma once

#include "tools/midisetup/Studio.h"

#include <functional>
#include <string>

namespace MidiSetup {

struct DeviceDescription {
    std::string name;
    std::string manufacturer;
    std::string model;
};

/// Makes a device, has it furnished with ports and properties, and adds it to the setup; `kind` is
/// an interface or external. Throws Failure, or what `furnish` throws; the change that it is part
/// of is then abandoned by whoever began it.
MIDIDeviceRef BuildDevice(DeviceKind kind, const DeviceDescription& description,
                          const std::function<void(MIDIDeviceRef)>& furnish);

/// Adds a port to a device. Throws Failure.
MIDIEntityRef BuildPort(MIDIDeviceRef device, const std::string& name, ItemCount sources,
                        ItemCount destinations);

/// Makes a device with ports "Port 1", "Port 2" …, each with a source and a destination, as
/// BuildDevice does.
MIDIDeviceRef BuildDeviceWithPorts(DeviceKind kind, const DeviceDescription& description,
                                   int ports);

/// Forgets a device that was built, or one that is unplugged.
OSStatus RemoveDevice(DeviceKind kind, MIDIDeviceRef device);

} // namespace MidiSetup
