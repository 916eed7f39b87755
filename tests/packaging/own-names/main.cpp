// A mixer whose own classes and functions bear names that the MIDI library uses inside.
#include <CoreMIDI/CoreMIDI.h>

#include <cstdint>
#include <string>
#include <string_view>

struct sqlite3;

namespace {
int gOwnCalls = 0;
} // namespace

class Service {
public:
    Service();
};
Service::Service() {
    ++gOwnCalls;
}

class Database {
public:
    explicit Database(const std::string& /*path*/) { ++gOwnCalls; }
};

class Transaction {
public:
    explicit Transaction(sqlite3*) { ++gOwnCalls; }
    ~Transaction();
    bool Commit();
};
Transaction::~Transaction() {
    ++gOwnCalls;
}
bool Transaction::Commit() {
    return ++gOwnCalls != 0;
}

class Statement {
public:
    Statement(sqlite3*, std::string_view, unsigned int);
    int Step();
};
Statement::Statement(sqlite3*, std::string_view, unsigned int) {
    ++gOwnCalls;
}
int Statement::Step() {
    return ++gOwnCalls;
}

int Execute(sqlite3*, const char*) {
    return ++gOwnCalls;
}

struct CFString {
    virtual ~CFString() { ++gOwnCalls; }
};

int main() {
    const ItemCount before = MIDIGetNumberOfExternalDevices();
    MIDIDeviceRef device = 0;
    if (MIDIExternalDeviceCreate(CFSTR("Own"), nullptr, nullptr, &device) != noErr ||
        MIDISetupAddExternalDevice(device) != noErr ||
        MIDIGetNumberOfExternalDevices() != before + 1 || gOwnCalls != 0)
        return 1;
    {
        const Service service;
        const Database database("own");
        const CFString string;
        Transaction transaction(nullptr);
        transaction.Commit();
        Statement(nullptr, "own", 0).Step();
        Execute(nullptr, "own");
    }
    return gOwnCalls == 9 ? 0 : 2;
}
