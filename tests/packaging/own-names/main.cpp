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
struct Transaction {
    explicit Transaction(sqlite3* connection);
    bool Commit();
};
Transaction::Transaction(sqlite3* /*connection*/) {
    ++gOwnCalls;
}
bool Transaction::Commit() {
    return ++gOwnCalls != 0;
}
struct Statement {
    int Step();
};
int Statement::Step() {
    return ++gOwnCalls;
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
    Transaction(nullptr).Commit();
    Statement().Step();
    Execute(nullptr, "own");
    return gOwnCalls == 6 ? 0 : 2;
}
