#include "bench/Surfaces/CabledStudio.h"

#include "Surfaces/MidiObject.h"
#include "Surfaces/SurfaceGroups.h"
#include "Surfaces/SurfaceModels.h"

#include "tests/support/TemporaryFolder.h"

#include <CoreMIDI/MIDIChanges.h>

namespace {

constexpr int kPortsOfAnInterface = 8;

void AddPorts(MIDIDeviceRef device, int count) {
    for (int port = 1; port <= count; ++port)
        MIDIDeviceAddEntity(device, MidiObject::ToText("Port " + std::to_string(port)).Get(), false,
                            1, 1, nullptr);
}

MIDIDeviceRef AddInterface(int number) {
    MIDIDeviceRef device = 0;
    MIDIDeviceCreate(nullptr, MidiObject::ToText("Interface " + std::to_string(number)).Get(),
                     CFSTR("Velt"), CFSTR("Eight Ports"), &device);
    AddPorts(device, kPortsOfAnInterface);
    MIDISetupAddDevice(device);
    return device;
}

MIDIDeviceRef AddSurface(int number) {
    MIDIDeviceRef device = 0;
    const SurfaceModel& model = *FindSurfaceModel("Mackie", "Mackie Control");
    MIDIExternalDeviceCreate(MidiObject::ToText("Surface " + std::to_string(number)).Get(),
                             MidiObject::ToText(model.manufacturer).Get(),
                             MidiObject::ToText(model.model).Get(), &device);
    AddPorts(device, 1);
    MIDISetupAddExternalDevice(device);
    const bool isCrowded = number % 2 == 0;
    MIDIObjectSetIntegerProperty(device, MidiObject::ToText(kGroupIDKey).Get(),
                                 isCrowded ? 0 : number / 100 + 1);
    MIDIObjectSetIntegerProperty(device, MidiObject::ToText(kGroupPositionKey).Get(),
                                 isCrowded ? 3 : number);
    return device;
}

void Cable(MIDIEntityRef port, MIDIDeviceRef surface) {
    const MIDIUniqueID id = MidiObject::ID(surface);
    MIDIObjectSetIntegerProperty(MIDIEntityGetSource(port, 0), kMIDIPropertyConnectionUniqueID, id);
    MIDIObjectSetIntegerProperty(MIDIEntityGetDestination(port, 0), kMIDIPropertyConnectionUniqueID,
                                 id);
}

void Build(int surfaces) {
    MIDIChanges together;
    MIDIDeviceRef interface = 0;
    for (int i = 0; i < surfaces; ++i) {
        const int port = i % kPortsOfAnInterface;
        if (port == 0)
            interface = AddInterface(i / kPortsOfAnInterface);
        Cable(MIDIDeviceGetEntity(interface, static_cast<ItemCount>(port)), AddSurface(i));
    }
    together.End();
}

} // namespace

std::filesystem::path UseCabledStudio(int surfaces) {
    static const TemporaryFolder folder;
    const std::filesystem::path file = folder / (std::to_string(surfaces) + ".sqlite3");
    const bool isNew = !exists(file);
    setenv("KESTRIN_MIDI_DATABASE", file.c_str(), 1);
    MIDIRestart();
    if (isNew) {
        Build(surfaces);
        MIDIRestart();
    }
    return file;
}
