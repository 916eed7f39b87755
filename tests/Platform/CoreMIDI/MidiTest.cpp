#include "tests/Platform/CoreMIDI/MidiTest.h"

#include "Platform/CoreFoundation/Text.h"
#include "Platform/CoreMIDI/Interface/Service.h"

#include <CoreFoundation/CFHolder.h>

#include <sys/eventfd.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <utility>

namespace {

SequencerSnapshot sPlugged;
std::function<void()> sAtTheNextLook;
const int sNews = eventfd(0, EFD_NONBLOCK);

bool TakeNews() {
    eventfd_t news = 0;
    return eventfd_read(sNews, &news) == 0;
}

class TestSequencer final : public SequencerReader {
public:
    SequencerSnapshot Read() override {
        if (const auto work = std::exchange(sAtTheNextLook, nullptr))
            work();
        return sPlugged;
    }
    int Descriptor() const override { return sNews; }
    bool HasChanged() override { return TakeNews(); }
};

std::vector<std::string> NamesOf(ItemCount count, MIDIObjectRef get(ItemCount)) {
    std::vector<std::string> names;
    for (ItemCount i = 0; i < count; ++i)
        names.push_back(NameOf(get(i)));
    return names;
}

} // namespace

MidiTest::MidiTest() {
    sPlugged = {};
    TakeNews();
    Service::Instance().UseReader(std::make_unique<TestSequencer>());
}

void MidiTest::Use(const std::filesystem::path& file) {
    MIDIRestart();
    setenv("KESTRIN_MIDI_DATABASE", file.c_str(), 1);
}

void MidiTest::PlugIn(SequencerSnapshot snapshot) {
    sPlugged = std::move(snapshot);
    eventfd_write(sNews, 1);
}

void MidiTest::AtTheNextLook(std::function<void()> work) {
    sAtTheNextLook = std::move(work);
}

ConnectionHolder MidiTest::OpenFile() const {
    MIDIRestart();
    sqlite3* connection = nullptr;
    EXPECT_EQ(sqlite3_open(fFile.c_str(), &connection), SQLITE_OK);
    sqlite3_busy_timeout(connection, 5000);
    return ConnectionHolder(connection);
}

pid_t MidiTest::Start(const std::function<void()>& work) {
    MIDIRestart();
    const pid_t child = fork();
    const auto run = [&]() noexcept { work(); };
    if (child == 0) {
        run();
        _exit(HasFailure());
    }
    return child;
}

int MidiTest::End(pid_t child) {
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

std::string TextOf(CFStringRef owned) {
    const CFHolder<CFStringRef> holder(owned);
    return Utf8Of(owned);
}

std::string StringOf(MIDIObjectRef object, CFStringRef key) {
    CFStringRef text = nullptr;
    const OSStatus status = MIDIObjectGetStringProperty(object, key, &text);
    return status == noErr ? TextOf(text) : "(" + std::to_string(status) + ")";
}

std::string NameOf(MIDIObjectRef object) {
    return StringOf(object, kMIDIPropertyName);
}

SInt32 IntegerOf(MIDIObjectRef object, CFStringRef key) {
    SInt32 value = 0;
    const OSStatus status = MIDIObjectGetIntegerProperty(object, key, &value);
    return status == noErr ? value : status;
}

std::vector<std::string> SourceNames() {
    return NamesOf(MIDIGetNumberOfSources(), MIDIGetSource);
}

std::vector<std::string> DeviceNames() {
    return NamesOf(MIDIGetNumberOfDevices(), MIDIGetDevice);
}

SequencerSnapshot SequencerWith(const std::vector<UnitFacts>& units) {
    SequencerSnapshot snapshot;
    snapshot.state = SequencerState::Ready;
    snapshot.ownClient = 128;
    snapshot.clients = {{0, "System", true, -1, {{1, "Announce", true, false}}},
                        {14, "Midi Through", true, -1, {{0, "Midi Through Port-0", true, true}}}};
    for (const UnitFacts& unit : units) {
        SequencerClient client{16 + 4 * unit.card, unit.shortName, true, unit.card, {}};
        for (const std::string& name : unit.ports)
            client.ports.push_back({static_cast<int>(client.ports.size()), name, true, true, true});
        snapshot.clients.push_back(client);
        snapshot.cards.push_back(
            {unit.card, unit.shortName, "snd-usb-audio", "1-1:1.0",
             UsbUnit{"0a73", "0006", unit.manufacturer, unit.product, unit.serial, unit.path},
             "USB_" + std::to_string(unit.card)});
    }
    snapshot.clients.push_back(
        {128, "Kestrin MIDI", false, -1, {{0, "Announcements", true, true}}});
    return snapshot;
}
