#pragma once

#include "Platform/CoreFoundation/CFObject.h"

#include <CoreFoundation/CFHolder.h>
#include <CoreFoundation/CFURL.h>

#include <string>

namespace KestrinMIDI {

struct URLObject final : CFObject {
    /// `path` is absolute.
    explicit URLObject(std::string path)
        : fPath(std::move(path)) {}

    const std::string& Path() const { return fPath; }

    bool Equals(const CFObject& other) const override {
        const auto* url = dynamic_cast<const URLObject*>(&other);
        return url && url->fPath == fPath;
    }

private:
    std::string fPath;
};

inline CFURLRef MakeURL(std::string absolutePath) {
    return ReferenceTo<CFURLRef>(new URLObject(std::move(absolutePath)));
}

inline const std::string& PathOf(CFURLRef url) {
    return ObjectOf<URLObject>(url).Path();
}

} // namespace KestrinMIDI
