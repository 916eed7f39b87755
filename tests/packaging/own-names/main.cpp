// A mixer whose own classes and functions bear names that the MIDI library uses inside.
#include <CoreMIDI/CoreMIDI.h>

#include <string>

struct sqlite3;

namespace {
int gOwnCalls = 0;
} // namespace

struct Service {
    Service();
};
Service::Service() {
    ++gOwnCalls;
}
struct Database {
    explicit Database(const std::string& path);
};
Database::Database(const std::string& /*path*/) {
    ++gOwnCalls;
}
int Execute(sqlite3* /*connection*/, const char* /*statements*/) {
    return ++gOwnCalls;
}

int main() {
    const ItemCount before = MIDIGetNumberOfExternalDevices();
    MIDIDeviceRef device = 0;
    if (MIDIExternalDeviceCreate(CFSTR("Own"), nullptr, nullptr, &device) != noErr ||
        MIDISetupAddExternalDevice(device) != noErr ||
        MIDIGetNumberOfExternalDevices() != before + 1 || gOwnCalls != 0)
        return 1;
    Service();
    Database("own");
    Execute(nullptr, "own");
    return gOwnCalls == 3 ? 0 : 2;
}
