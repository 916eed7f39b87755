#include "tools/midisetup/Building.h"

#include "tools/messages/Messages.h"
#include "tools/midisetup/Properties.h"

namespace MidiSetup {

namespace {

/// A device as the service makes it, before it is added; null texts stay unset.
MIDIDeviceRef CreateDevice(DeviceKind kind, const DeviceDescription& description) {
    const auto given = [](const std::string& text) {
        return text.empty() ? Text() : RequireText(text);
    };
    const Text name = given(description.name);
    const Text manufacturer = given(description.manufacturer);
    const Text model = given(description.model);
    MIDIDeviceRef device = 0;
    const OSStatus status =
        kind == DeviceKind::kExternal
            ? MIDIExternalDeviceCreate(name.Get(), manufacturer.Get(), model.Get(), &device)
            : MIDIDeviceCreate(nullptr, name.Get(), manufacturer.Get(), model.Get(), &device);
    Check(status, Message("cannot make the device"));
    return device;
}

void AddToSetup(DeviceKind kind, MIDIDeviceRef device) {
    Check(kind == DeviceKind::kExternal ? MIDISetupAddExternalDevice(device)
                                        : MIDISetupAddDevice(device),
          Message("cannot add the device"));
}

} // namespace

MIDIDeviceRef BuildDevice(DeviceKind kind, const DeviceDescription& description,
                          const std::function<void(MIDIDeviceRef)>& furnish) {
    const MIDIDeviceRef device = CreateDevice(kind, description);
    furnish(device);
    AddToSetup(kind, device);
    return device;
}

MIDIEntityRef BuildPort(MIDIDeviceRef device, const std::string& name, ItemCount sources,
                        ItemCount destinations) {
    MIDIEntityRef entity = 0;
    Check(
        MIDIDeviceAddEntity(device, RequireText(name).Get(), false, sources, destinations, &entity),
        Message("cannot add a port"));
    return entity;
}

MIDIDeviceRef BuildDeviceWithPorts(DeviceKind kind, const DeviceDescription& description,
                                   int ports) {
    return BuildDevice(kind, description, [ports](MIDIDeviceRef device) {
        for (int port = 1; port <= ports; ++port)
            BuildPort(device, "Port " + std::to_string(port), 1, 1);
    });
}

OSStatus RemoveDevice(DeviceKind kind, MIDIDeviceRef device) {
    return kind == DeviceKind::kExternal ? MIDISetupRemoveExternalDevice(device)
                                         : MIDISetupRemoveDevice(device);
}

} // namespace MidiSetup
