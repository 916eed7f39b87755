#pragma once

#include "tests/support/TemporaryFolder.h"

#include <CoreMIDI/CoreMIDI.h>

#include <filesystem>
#include <optional>
#include <string>

/// A MIDI database of its own for one test, from construction to the end of its life, and short
/// ways to put devices into it.
class TestStudio {
public:
    TestStudio();
    ~TestStudio();
    TestStudio(const TestStudio&) = delete;
    TestStudio& operator=(const TestStudio&) = delete;

    std::filesystem::path DatabasePath() const { return fFolder / "studio.sqlite3"; }

    /// An interface without driver, with ports "Port 1" and so on, each with a source and a
    /// destination. An empty text is not set.
    MIDIDeviceRef AddInterface(const std::string& name, int ports,
                               const std::string& manufacturer = "Velt",
                               const std::string& model = "Interface");

    /// An external device with one such port.
    MIDIDeviceRef AddExternal(const std::string& name, const std::string& manufacturer,
                              const std::string& model);

    /// Changes the file behind the service's back, which is closed before.
    void RunSQL(const std::string& sql) const;

    /// `port` counts from 1.
    static MIDIEntityRef Port(MIDIDeviceRef device, int port) {
        return MIDIDeviceGetEntity(device, static_cast<ItemCount>(port - 1));
    }
    static MIDIEndpointRef Source(MIDIDeviceRef device, int port) {
        return MIDIEntityGetSource(Port(device, port), 0);
    }
    static MIDIEndpointRef Destination(MIDIDeviceRef device, int port) {
        return MIDIEntityGetDestination(Port(device, port), 0);
    }

    /// Connects both endpoints of the port to the object.
    static void Cable(MIDIDeviceRef interface, int port, MIDIObjectRef object);

    static void SetText(MIDIObjectRef object, const char* key, const std::string& value);
    static void SetNumber(MIDIObjectRef object, const char* key, SInt32 value);
    static void SetBytes(MIDIObjectRef object, const char* key, const void* bytes,
                         std::size_t count);

    static std::optional<SInt32> Number(MIDIObjectRef object, const char* key);
    static MIDIUniqueID ID(MIDIObjectRef object) {
        return Number(object, "uniqueID").value_or(kMIDIInvalidUniqueID);
    }

private:
    TemporaryFolder fFolder;
};
