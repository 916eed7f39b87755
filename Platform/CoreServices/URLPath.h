#pragma once

#include <CoreFoundation/CFURL.h>

#include <string>

/// The path that a URL stands for; empty where it is too long to be opened.
inline std::string PathOfURL(CFURLRef url) {
    UInt8 path[4096];
    if (!CFURLGetFileSystemRepresentation(url, true, path, sizeof path))
        return {};
    return reinterpret_cast<const char*>(path);
}
