#include "tests/support/TestStudio.h"

#include <CoreFoundation/CFHolder.h>

#include <sqlite3.h>

#include <cstdlib>
#include <stdexcept>

namespace {

using Text = CFHolder<CFStringRef>;

Text ToText(const std::string& utf8) {
    return Text(CFStringCreateWithCString(nullptr, utf8.c_str(), kCFStringEncodingUTF8));
}

Text TextOrNone(const std::string& utf8) {
    return utf8.empty() ? Text() : ToText(utf8);
}

void Check(OSStatus status) {
    if (status != noErr)
        throw std::runtime_error("the MIDI service answered " + std::to_string(status));
}

void AddPort(MIDIDeviceRef device, const std::string& name) {
    MIDIEntityRef entity = 0;
    Check(MIDIDeviceAddEntity(device, ToText(name).Get(), false, 1, 1, &entity));
}

} // namespace

TestStudio::TestStudio() {
    setenv("KESTRIN_MIDI_DATABASE", DatabasePath().c_str(), 1);
    MIDIRestart();
}

TestStudio::~TestStudio() {
    unsetenv("KESTRIN_MIDI_DATABASE");
    MIDIRestart();
}

MIDIDeviceRef TestStudio::AddInterface(const std::string& name, int ports,
                                       const std::string& manufacturer, const std::string& model) {
    MIDIDeviceRef device = 0;
    Check(MIDIDeviceCreate(nullptr, TextOrNone(name).Get(), TextOrNone(manufacturer).Get(),
                           TextOrNone(model).Get(), &device));
    for (int port = 1; port <= ports; ++port)
        AddPort(device, "Port " + std::to_string(port));
    Check(MIDISetupAddDevice(device));
    return device;
}

MIDIDeviceRef TestStudio::AddExternal(const std::string& name, const std::string& manufacturer,
                                      const std::string& model) {
    MIDIDeviceRef device = 0;
    Check(MIDIExternalDeviceCreate(TextOrNone(name).Get(), TextOrNone(manufacturer).Get(),
                                   TextOrNone(model).Get(), &device));
    AddPort(device, "Port 1");
    Check(MIDISetupAddExternalDevice(device));
    return device;
}

void TestStudio::RunSQL(const std::string& sql) const {
    MIDIRestart();
    sqlite3* file = nullptr;
    sqlite3_open(DatabasePath().c_str(), &file);
    const int code = sqlite3_exec(file, sql.c_str(), nullptr, nullptr, nullptr);
    sqlite3_close(file);
    Check(code);
}

void TestStudio::Cable(MIDIDeviceRef interface, int port, MIDIObjectRef object) {
    SetNumber(Source(interface, port), "connUniqueID", ID(object));
    SetNumber(Destination(interface, port), "connUniqueID", ID(object));
}

void TestStudio::SetText(MIDIObjectRef object, const char* key, const std::string& value) {
    Check(MIDIObjectSetStringProperty(object, ToText(key).Get(), ToText(value).Get()));
}

void TestStudio::SetNumber(MIDIObjectRef object, const char* key, SInt32 value) {
    Check(MIDIObjectSetIntegerProperty(object, ToText(key).Get(), value));
}

void TestStudio::SetBytes(MIDIObjectRef object, const char* key, const void* bytes,
                          std::size_t count) {
    const CFHolder<CFDataRef> data(
        CFDataCreate(nullptr, static_cast<const UInt8*>(bytes), static_cast<CFIndex>(count)));
    Check(MIDIObjectSetDataProperty(object, ToText(key).Get(), data.Get()));
}

std::optional<SInt32> TestStudio::Number(MIDIObjectRef object, const char* key) {
    SInt32 value = 0;
    if (MIDIObjectGetIntegerProperty(object, ToText(key).Get(), &value) != noErr)
        return std::nullopt;
    return value;
}
