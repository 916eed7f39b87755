#pragma once

#include <filesystem>

/// A new empty folder that is removed, with all that is in it, at the end of its life.
class TemporaryFolder {
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& Path() const { return fPath; }
    std::filesystem::path operator/(const std::filesystem::path& name) const {
        return fPath / name;
    }

private:
    std::filesystem::path fPath;
};
