#include "tests/Platform/CoreMIDI/MidiTest.h"

#include <cstdlib>
#include <new>
#include <utility>

namespace {

/// How many more pieces of memory can be had before one can't; negative: as many as there are.
thread_local int sPieces = -1;

} // namespace

// None is inlined: the compiler would see one half and take it for a mismatch.
[[gnu::noinline]] void* operator new(std::size_t size) {
    void* const piece = sPieces == 0 ? nullptr : std::malloc(size);
    sPieces -= sPieces < 0 ? 0 : 1;
    return piece ? piece : throw std::bad_alloc();
}

[[gnu::noinline]] void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return std::malloc(size);
}

[[gnu::noinline]] void operator delete(void* piece) noexcept {
    std::free(piece);
}

[[gnu::noinline]] void operator delete(void* piece, std::size_t) noexcept {
    std::free(piece);
}

namespace {

using ExceptionsTest = MidiTest;

/// A little of everything, from the opening on.
void UseTheService(MIDIDeviceRef known) {
    KestrinMIDIBeginReading();
    MIDIGetNumberOfSources();
    KestrinMIDIEndReading();
    MIDIDeviceRef device = 0;
    MIDIEntityRef entity = 0;
    CFStringRef text = nullptr;
    MIDIDeviceCreate(nullptr, CFSTR("New"), CFSTR("Maker"), nullptr, &device);
    MIDIDeviceAddEntity(device, CFSTR("Port"), 0, 1, 1, &entity);
    MIDISetupAddDevice(device);
    if (MIDIObjectGetStringProperty(entity, kMIDIPropertyManufacturer, &text) == noErr)
        CFRelease(text);
    MIDISetupRemoveDevice(device);
    SInt32 count = 0;
    KestrinMIDIBeginChanges();
    MIDIObjectGetIntegerProperty(known, CFSTR("count"), &count);
    MIDIObjectSetIntegerProperty(known, CFSTR("count"), count + 1);
    KestrinMIDIEndChanges();
    if (const CFStringRef problem = KestrinMIDICopyDatabaseProblem())
        CFRelease(problem);
    const UInt8 path[] = "/a folder";
    if (const CFURLRef url =
            CFURLCreateFromFileSystemRepresentation(nullptr, path, sizeof path - 1, 1)) {
        if (const CFURLRef file =
                CFURLCreateCopyAppendingPathComponent(nullptr, url, CFSTR("a file of it"), 0))
            CFRelease(file);
        CFRelease(url);
    }
    if (const CFDataRef data = CFDataCreate(nullptr, path, sizeof path))
        CFRelease(data);
}

TEST_F(ExceptionsTest, NoneLeavesACallWhereMemoryEnds) {
    const MIDIDeviceRef known = AddInterface("Interface", 1);
    PlugIn(SequencerWith({{.serial = "1"}}));
    UseTheService(known); // makes the constant strings
    MIDIRestart();
    const std::filesystem::path saved = fFile.string() + ".saved";
    std::filesystem::copy_file(fFile, saved);
    bool hasEnded = true;
    for (int pieces = 0; hasEnded; ++pieces) {
        MIDIRestart();
        // Each begins with the same, so that the pieces are the same, too.
        std::filesystem::copy_file(saved, fFile, std::filesystem::copy_options::overwrite_existing);
        PlugIn(SequencerWith({{.serial = "1", .path = "elsewhere"}}));
        sPieces = pieces;
        UseTheService(known);
        hasEnded = std::exchange(sPieces, -1) < 0;
        if (KestrinMIDIGetDatabaseState() != kKestrinMIDIDatabaseReady)
            continue;
        // What is in memory is what is in the file.
        const std::vector<std::string> names = DeviceNames();
        const auto count = Number(known, "count");
        MIDIRestart();
        EXPECT_EQ(DeviceNames(), names) << pieces;
        EXPECT_EQ(Number(known, "count"), count) << pieces;
    }
    MIDIRestart();
    EXPECT_EQ(KestrinMIDICopyDatabaseDamage(), nullptr);
}

} // namespace
