#pragma once

#include "Platform/CoreFoundation/CFObject.h"

#include <CoreFoundation/CFHolder.h>
#include <CoreFoundation/CFURL.h>

#include <string>

namespace KestrinMIDI {

struct URLObject final : CFObject {
    /// `path` is absolute.
    URLObject(std::string path, bool isFolder)
        : fPath(std::move(path))
        , fIsFolder(isFolder) {}

    const std::string& Path() const { return fPath; }
    bool IsFolder() const { return fIsFolder; }

    bool Equals(const CFObject& other) const override {
        const auto* url = dynamic_cast<const URLObject*>(&other);
        return url && url->fPath == fPath && url->fIsFolder == fIsFolder;
    }

private:
    std::string fPath;
    bool fIsFolder;
};

inline CFURLRef MakeURL(std::string absolutePath, bool isFolder) {
    return ReferenceTo<CFURLRef>(new URLObject(std::move(absolutePath), isFolder));
}

inline const std::string& PathOf(CFURLRef url) {
    return ObjectOf<URLObject>(url).Path();
}

} // namespace KestrinMIDI
