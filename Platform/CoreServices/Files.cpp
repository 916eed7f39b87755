#include "Platform/CoreServices/URLPath.h"

#include <CoreFoundation/CFHolder.h>
#include <CoreServices/Files.h>

#include <sys/stat.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <optional>

namespace {

namespace fs = std::filesystem;

fs::path PathOf(const FSRef& ref) {
    return fs::path(ref.folder) / ref.name;
}

bool IsRoot(const FSRef& ref) {
    return ref.name[0] == '\0';
}

template <std::size_t kCapacity>
bool Copy(const std::string& text, char (&buffer)[kCapacity]) {
    if (text.size() >= kCapacity)
        return false;
    std::memcpy(buffer, text.c_str(), text.size() + 1);
    return true;
}

bool Fill(FSRef& ref, const std::string& folder, const std::string& name) {
    return Copy(folder, ref.folder) && Copy(name, ref.name);
}

std::optional<struct stat> StatusOf(const fs::path& path) {
    struct stat status {};
    if (stat(path.c_str(), &status) != 0)
        return std::nullopt;
    return status;
}

/// Links in the folder's path are followed once and for all; one at its end stays what it is.
fs::path Canonical(const fs::path& path, std::error_code& error) {
    const fs::path leaf = path.filename();
    if (leaf.empty() || leaf == "." || leaf == "..")
        return fs::canonical(path, error);
    const fs::path folder = fs::canonical(fs::absolute(path).parent_path(), error);
    return folder / leaf;
}

bool ReferTo(const fs::path& path, FSRef& ref) {
    std::error_code error;
    if (!StatusOf(path))
        return false;
    const fs::path canonical = Canonical(path, error);
    return !error && Fill(ref, canonical.parent_path(), canonical.filename());
}

UInt32 ParentNumber(const FSRef& ref) {
    if (IsRoot(ref))
        return fsRtParID;
    const auto folder = StatusOf(ref.folder);
    return std::max<UInt32>(folder ? static_cast<UInt32>(folder->st_ino) : 0, fsRtDirID);
}

bool CopyName(const std::string& name, HFSUniStr255& result) {
    const CFHolder<CFStringRef> text(
        CFStringCreateWithFileSystemRepresentation(kCFAllocatorDefault, name.c_str()));
    const CFIndex length = CFStringGetLength(text.Get());
    if (length > static_cast<CFIndex>(std::size(result.unicode)))
        return false;
    result.length = static_cast<UInt16>(length);
    CFStringGetCharacters(text.Get(), CFRangeMake(0, length), result.unicode);
    return true;
}

/// The units as a file's name; empty where no file can bear it.
std::string FileNameOf(const UniChar* units, UniCharCount length) {
    const CFHolder<CFStringRef> text(
        CFStringCreateWithCharacters(kCFAllocatorDefault, units, static_cast<CFIndex>(length)));
    std::string name(length * 3 + 1, '\0'); // a unit takes three bytes at most
    if (!text || !CFStringGetFileSystemRepresentation(text.Get(), name.data(),
                                                      static_cast<CFIndex>(name.size())))
        return {};
    name.resize(std::strlen(name.c_str()));
    const bool isPlain = name != "." && name != ".." && name.find('/') == std::string::npos;
    return isPlain ? name : std::string();
}

} // namespace

OSStatus FSPathMakeRef(const UInt8* path, FSRef* ref, Boolean* isDirectory) {
    const fs::path file = reinterpret_cast<const char*>(path);
    std::error_code error;
    if (isDirectory)
        *isDirectory = fs::is_directory(file, error);
    return ReferTo(file, *ref) ? noErr : fnfErr;
}

OSErr FSGetCatalogInfo(const FSRef* ref, FSCatalogInfoBitmap which, FSCatalogInfo* info,
                       HFSUniStr255* name, struct FSSpec*, FSRef* parent) {
    if (!StatusOf(PathOf(*ref)))
        return fnfErr;
    if (name && !CopyName(ref->name, *name))
        return bdNamErr;
    if (info && (which & kFSCatInfoParentDirID) != 0)
        info->parentDirID = ParentNumber(*ref);
    if (parent) {
        const fs::path folder = ref->folder;
        Fill(*parent, folder.parent_path(), folder.filename());
    }
    return noErr;
}

OSErr FSMakeFSRefUnicode(const FSRef* folder, UniCharCount length, const UniChar* name,
                         TextEncoding, FSRef* ref) {
    const std::string leaf = FileNameOf(name, length);
    if (leaf.empty())
        return bdNamErr;
    const fs::path path = PathOf(*folder);
    if (!StatusOf(path / leaf))
        return fnfErr;
    if (ref && !Fill(*ref, path, leaf))
        return bdNamErr;
    return noErr;
}

Boolean CFURLGetFSRef(CFURLRef url, FSRef* ref) {
    return ReferTo(PathOfURL(url), *ref);
}

CFURLRef CFURLCreateFromFSRef(CFAllocatorRef, const FSRef* ref) {
    const std::string path = PathOf(*ref);
    std::error_code error;
    return CFURLCreateFromFileSystemRepresentation(
        kCFAllocatorDefault, reinterpret_cast<const UInt8*>(path.data()),
        static_cast<CFIndex>(path.size()), fs::is_directory(path, error));
}
