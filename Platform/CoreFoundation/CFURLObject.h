#pragma once

#include "Platform/CoreFoundation/CFObject.h"

#include <CoreFoundation/CFHolder.h>
#include <CoreFoundation/CFURL.h>

#include <string>

struct CFURL final : KestrinMIDI::CFObject {
    /// `path` is absolute.
    CFURL(std::string path, bool isFolder)
        : fPath(std::move(path))
        , fIsFolder(isFolder) {}

    const std::string& Path() const { return fPath; }
    bool IsFolder() const { return fIsFolder; }

    bool Equals(const KestrinMIDI::CFObject& other) const override {
        const auto* url = dynamic_cast<const CFURL*>(&other);
        return url && url->fPath == fPath && url->fIsFolder == fIsFolder;
    }

private:
    std::string fPath;
    bool fIsFolder;
};

/// The string's units as the bytes of a file name.
std::string FileNameOf(CFStringRef string);
