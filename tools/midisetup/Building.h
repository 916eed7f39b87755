#pragma once

#include "tools/midisetup/Studio.h"

#include <string>

namespace MidiSetup {

struct DeviceDescription {
    std::string name;
    std::string manufacturer;
    std::string model;
};

/// Makes and adds a device; `kind` is an interface or external. Throws Failure.
MIDIDeviceRef BuildDevice(DeviceKind kind, const DeviceDescription& description);

/// Adds a port to a device. Throws Failure.
MIDIEntityRef BuildPort(MIDIDeviceRef device, const std::string& name, ItemCount sources,
                        ItemCount destinations);

/// Makes a device with ports "Port 1", "Port 2" …, each with a source and a destination. Throws
/// Failure, leaving no part of the device.
MIDIDeviceRef BuildDeviceWithPorts(DeviceKind kind, const DeviceDescription& description,
                                   int ports);

} // namespace MidiSetup
