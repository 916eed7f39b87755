#include "Resources/FileSpecification.h"

#include "Strings/PlatformStrings.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace Kestrin {

namespace {

// What the system takes for a path.
constexpr std::size_t kPathCapacity = 4096 + 256;

} // namespace

FileSpecification::FileSpecification() = default;

FileSpecification::FileSpecification(const FSRef& ref) {
    FSCatalogInfo info{};
    if (FSGetCatalogInfo(&ref, kFSCatInfoParentDirID, &info, &fName, nullptr, &fReference) !=
        noErr) {
        fName.length = 0;
        return;
    }
    fValid = true;
    if (info.parentDirID == fsRtParID) {
        fReference = ref;
        fName.length = 0;
    }
}

FileSpecification::FileSpecification(const FSRef& folder, const UString& name)
    : fReference(folder) {
    fValid = name.length() <= std::size(fName.unicode);
    if (!fValid)
        return;
    fName.length = static_cast<UInt16>(name.length());
    std::copy(name.begin(), name.end(), fName.unicode);
}

bool FileSpecification::Exists() const {
    if (!fValid || fName.length == 0)
        return fValid;
    return FSMakeFSRefUnicode(&fReference, fName.length, fName.unicode, kTextEncodingUnknown,
                              nullptr) == noErr;
}

UString FileSpecification::GetFullPath() const {
    const CFHolder<CFURLRef> url = MakeURL();
    if (!url)
        return {};
    return CFToUString(
        CFHolder<CFStringRef>(CFURLCopyFileSystemPath(url.Get(), kCFURLPOSIXPathStyle)).Get());
}

std::string FileSpecification::GetPOSIXPath() const {
    // A path's bytes need not be UTF-8, nor fit the text's own surrogates.
    const CFHolder<CFURLRef> url = MakeURL();
    std::array<UInt8, kPathCapacity> path{};
    if (!url || !CFURLGetFileSystemRepresentation(url.Get(), true, path.data(),
                                                  static_cast<CFIndex>(path.size())))
        return {};
    return reinterpret_cast<const char*>(path.data());
}

/// Null when not valid.
CFHolder<CFURLRef> FileSpecification::MakeURL() const {
    if (!fValid)
        return {};
    CFHolder<CFURLRef> url(CFURLCreateFromFSRef(kCFAllocatorDefault, &fReference));
    if (!url || fName.length == 0)
        return url;
    return CFHolder<CFURLRef>(CFURLCreateCopyAppendingPathComponent(
        kCFAllocatorDefault, url.Get(), HFSToCFString(fName).Get(), false));
}

} // namespace Kestrin
