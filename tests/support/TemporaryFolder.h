#pragma once

#include <stdlib.h>

#include <filesystem>
#include <stdexcept>
#include <string>

/// A new empty folder that is removed, with all that is in it, at the end of its life.
class TemporaryFolder {
public:
    TemporaryFolder() {
        std::string name = std::filesystem::temp_directory_path() / "kestrin-test-XXXXXX";
        if (mkdtemp(name.data()) == nullptr)
            throw std::runtime_error("cannot make a temporary folder like " + name);
        fPath = name;
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        permissions(fPath, std::filesystem::perms::owner_all, ignored);
        remove_all(fPath, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& Path() const { return fPath; }
    std::filesystem::path operator/(const std::filesystem::path& name) const {
        return fPath / name;
    }

private:
    std::filesystem::path fPath;
};
