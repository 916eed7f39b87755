#include "bench/Platform/CoreMIDI/Studio.h"

#include <cstdlib>
#include <filesystem>
#include <map>

namespace {

/// A folder that is removed at the program's end.
class Folder {
public:
    Folder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "bench-XXXXXX").string();
        fPath = mkdtemp(pattern.data());
    }
    ~Folder() { std::filesystem::remove_all(fPath); }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
    const std::filesystem::path& Path() const { return fPath; }

private:
    std::filesystem::path fPath;
};

void Name(const std::string& file) {
    MIDIRestart();
    setenv("KESTRIN_MIDI_DATABASE", file.c_str(), 1);
}

void AddSurface() {
    MIDIDeviceRef device = 0;
    MIDIDeviceCreate(nullptr, CFSTR("MCU Pro USB"), CFSTR("LOUD Technologies, Inc."),
                     CFSTR("MCU Pro USB"), &device);
    MIDIDeviceAddEntity(device, CFSTR("Port 1"), 1, 1, 1, nullptr);
    MIDISetupAddDevice(device);
    MIDIObjectSetIntegerProperty(device, CFSTR("com_velt_sorvex_control_surface_grouppos"), 3);
    MIDIObjectSetIntegerProperty(device, CFSTR("com_velt_sorvex_control_surface_groupid"), 0);
}

} // namespace

const std::string& StudioFile(int surfaces) {
    static const Folder folder;
    static std::map<int, std::string> files;
    const auto [made, isNew] =
        files.emplace(surfaces, (folder.Path() / std::to_string(surfaces)).string());
    if (isNew) {
        Name(made->second);
        for (int i = 0; i < surfaces; ++i)
            AddSurface();
        MIDIRestart();
    }
    return made->second;
}

void UseStudio(int surfaces) {
    Name(StudioFile(surfaces));
}

ConnectionHolder ConnectTo(const std::string& file) {
    sqlite3* connection = nullptr;
    sqlite3_open_v2(file.c_str(), &connection, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX,
                    nullptr);
    Execute(connection, "PRAGMA journal_mode=WAL;PRAGMA synchronous=NORMAL;PRAGMA foreign_keys=ON");
    return ConnectionHolder(connection);
}
