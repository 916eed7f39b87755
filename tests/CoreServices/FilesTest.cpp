#include "Platform/CoreFoundation/CFHolder.h"
#include "tests/support/TemporaryFolder.h"

#include <CoreServices/CoreServices.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace {

namespace fs = std::filesystem;

CFHolder<CFURLRef> URLOf(const std::string& path) {
    return CFHolder<CFURLRef>(CFURLCreateFromFileSystemRepresentation(
        kCFAllocatorDefault, reinterpret_cast<const UInt8*>(path.data()),
        static_cast<CFIndex>(path.size()), false));
}

std::string PathOf(CFURLRef url) {
    UInt8 path[4096];
    return CFURLGetFileSystemRepresentation(url, true, path, sizeof path)
               ? reinterpret_cast<const char*>(path)
               : "(too long)";
}

CFHolder<CFStringRef> String(const std::string& text) {
    return CFHolder<CFStringRef>(
        CFStringCreateWithCString(kCFAllocatorDefault, text.c_str(), kCFStringEncodingUTF8));
}

TEST(Files, TellsNameParentAndNumberOfAReference) {
    const TemporaryFolder folder;
    const fs::path path = fs::canonical(folder.Path()) / "name";
    std::ofstream(path) << "x";
    FSRef file{};
    Boolean isDirectory = true;
    ASSERT_EQ(FSPathMakeRef(reinterpret_cast<const UInt8*>(path.c_str()), &file, &isDirectory),
              noErr);
    EXPECT_FALSE(isDirectory);

    FSCatalogInfo info{};
    HFSUniStr255 name{};
    FSRef parent{};
    ASSERT_EQ(FSGetCatalogInfo(&file, kFSCatInfoParentDirID, &info, &name, nullptr, &parent),
              noErr);
    EXPECT_GE(info.parentDirID, static_cast<UInt32>(fsRtDirID));
    EXPECT_EQ(std::string(name.unicode, name.unicode + name.length), "name");
    EXPECT_EQ(PathOf(CFHolder<CFURLRef>(CFURLCreateFromFSRef(nullptr, &parent)).Get()),
              path.parent_path());

    fs::remove(path);
    EXPECT_EQ(FSGetCatalogInfo(&file, 0, nullptr, nullptr, nullptr, nullptr), fnfErr);
    EXPECT_EQ(FSPathMakeRef(reinterpret_cast<const UInt8*>(path.c_str()), &file, nullptr), fnfErr);
}

TEST(Files, MakesReferencesOfNamesThatExist) {
    const TemporaryFolder folder;
    std::ofstream(folder / "a") << "x";
    fs::create_symlink("gone", folder / "dangling");
    FSRef parent{};
    ASSERT_TRUE(CFURLGetFSRef(URLOf(folder.Path()).Get(), &parent));
    const auto make = [&parent](const std::string& name) {
        const std::basic_string<UniChar> units(name.begin(), name.end());
        FSRef made{};
        return FSMakeFSRefUnicode(&parent, units.size(), units.data(), kTextEncodingUnknown, &made);
    };
    EXPECT_EQ(make("a"), noErr);
    EXPECT_EQ(make("b"), fnfErr);
    EXPECT_EQ(make("dangling"), fnfErr);
    for (const std::string& name :
         {std::string(), std::string(".."), std::string("a/"), std::string("a\0", 2)})
        EXPECT_EQ(make(name), bdNamErr) << name;
}

TEST(CFURL, AppendsComponentsAndTellsItsPath) {
    const auto folder = URLOf("/usr//");
    const CFHolder<CFURLRef> file(CFURLCreateCopyAppendingPathComponent(
        nullptr, folder.Get(), String("caf\u00e9 %20#?").Get(), false));
    EXPECT_EQ(PathOf(file.Get()), "/usr/caf\u00e9 %20#?");
    EXPECT_TRUE(CFEqual(file.Get(), URLOf("/usr/caf\u00e9 %20#?").Get()));
    const CFHolder<CFStringRef> path(CFURLCopyFileSystemPath(file.Get(), kCFURLPOSIXPathStyle));
    EXPECT_TRUE(CFEqual(path.Get(), String("/usr/caf\u00e9 %20#?").Get()));

    for (const char* component : {"", "a/b"})
        EXPECT_EQ(CFURLCreateCopyAppendingPathComponent(nullptr, folder.Get(),
                                                        String(component).Get(), false),
                  nullptr);
    EXPECT_FALSE(URLOf(""));
    EXPECT_FALSE(URLOf(std::string("/a\0b", 4)));
    EXPECT_EQ(PathOf(URLOf("relative").Get()), fs::current_path() / "relative");
    UInt8 small[4];
    EXPECT_FALSE(CFURLGetFileSystemRepresentation(folder.Get(), true, small, sizeof small));
}

TEST(CFBundle, FindsTheResourcesOfAnyFolder) {
    const TemporaryFolder folder;
    fs::create_directories(folder / "Resources/Help/a.htm");
    std::ofstream(folder / "Resources/plain") << "x";
    std::ofstream(folder / "Resources/Help/b.htm") << "x";
    const CFHolder<CFBundleRef> bundle(CFBundleCreate(nullptr, URLOf(folder.Path()).Get()));
    const auto find = [&bundle](const char* name, const char* type, const char* subFolder) {
        const CFHolder<CFURLRef> url(CFBundleCopyResourceURL(
            bundle.Get(), String(name).Get(), type ? String(type).Get() : nullptr,
            subFolder ? String(subFolder).Get() : nullptr));
        return url ? fs::path(PathOf(url.Get())).filename().string() : "(none)";
    };
    EXPECT_EQ(find("plain", nullptr, nullptr), "plain");
    EXPECT_EQ(find("plain", "", nullptr), "plain");
    EXPECT_EQ(find("b", "htm", "Help"), "b.htm");
    EXPECT_EQ(find("b", "htm", nullptr), "(none)");
    EXPECT_EQ(find("a", "htm", "Help"), "(none)") << "a folder is no resource";
    EXPECT_EQ(CFBundleCreate(nullptr, URLOf((folder / "none").string()).Get()), nullptr);
}

} // namespace
