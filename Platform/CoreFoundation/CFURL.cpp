#include "Platform/CoreFoundation/CFURLObject.h"
#include "Platform/CoreFoundation/FileNames.h"

#include <cstring>
#include <filesystem>

using namespace KestrinMIDI;

namespace {

bool IsName(const std::string& component) {
    return !component.empty() && component.find('/') == std::string::npos &&
           component.find('\0') == std::string::npos;
}

std::string WithoutSlashAtEnd(std::string path) {
    while (path.size() > 1 && path.back() == '/')
        path.pop_back();
    return path;
}

} // namespace

CFURLRef CFURLCreateFromFileSystemRepresentation(CFAllocatorRef, const UInt8* path, CFIndex count,
                                                 Boolean) {
    return OrNothing([=]() -> CFURLRef {
        const std::string bytes(path, path + count);
        if (bytes.empty() || bytes.find('\0') != std::string::npos)
            return nullptr;
        std::error_code error;
        const std::filesystem::path absolute = std::filesystem::absolute(bytes, error);
        return error ? nullptr : MakeURL(WithoutSlashAtEnd(absolute.string()));
    });
}

CFURLRef CFURLCreateCopyAppendingPathComponent(CFAllocatorRef, CFURLRef url, CFStringRef component,
                                               Boolean) {
    return OrNothing([=]() -> CFURLRef {
        const std::string name = FileNameOf(component);
        if (!IsName(name))
            return nullptr;
        const std::string separator = PathOf(url).ends_with('/') ? "" : "/";
        return MakeURL(PathOf(url) + separator + name);
    });
}

CFStringRef CFURLCopyFileSystemPath(CFURLRef url, CFURLPathStyle style) {
    if (style != kCFURLPOSIXPathStyle)
        return nullptr;
    return CFStringCreateWithFileSystemRepresentation(kCFAllocatorDefault, PathOf(url).c_str());
}

Boolean CFURLGetFileSystemRepresentation(CFURLRef url, Boolean, UInt8* buffer, CFIndex capacity) {
    const std::string& path = PathOf(url);
    if (capacity < 0 || path.size() >= static_cast<std::size_t>(capacity))
        return false;
    std::memcpy(buffer, path.c_str(), path.size() + 1);
    return true;
}
