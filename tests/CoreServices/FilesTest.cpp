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

TEST(Files, MakesReferencesOfNamesThatExist) {
    const TemporaryFolder folder;
    std::ofstream(folder / "a") << "x";
    fs::create_symlink("gone", folder / "dangling");
    FSRef parent{};
    ASSERT_TRUE(CFURLGetFSRef(URLOf(folder.Path()).Get(), &parent));
    const std::pair<std::string, OSStatus> names[] = {{"a", noErr},
                                                      {"b", fnfErr},
                                                      {"dangling", fnfErr},
                                                      {"", bdNamErr},
                                                      {"..", bdNamErr},
                                                      {"a/", bdNamErr},
                                                      {std::string("a\0", 2), bdNamErr}};
    for (const auto& [name, status] : names) {
        const std::basic_string<UniChar> units(name.begin(), name.end());
        FSRef made{};
        EXPECT_EQ(
            FSMakeFSRefUnicode(&parent, units.size(), units.data(), kTextEncodingUnknown, &made),
            status)
            << name;
    }
    fs::remove_all(folder.Path());
    EXPECT_EQ(FSGetCatalogInfo(&parent, 0, nullptr, nullptr, nullptr, nullptr), fnfErr);
}

TEST(CFURL, AppendsComponentsAndRefusesWhatIsNoPath) {
    const auto folder = URLOf("/usr//");
    const auto append = [&folder](const char* component) {
        return CFHolder<CFURLRef>(CFURLCreateCopyAppendingPathComponent(
            nullptr, folder.Get(), String(component).Get(), false));
    };
    EXPECT_TRUE(CFEqual(append("caf\u00e9 %20#?").Get(), URLOf("/usr/caf\u00e9 %20#?").Get()));
    EXPECT_EQ(PathOf(append("caf\u00e9 %20#?").Get()), "/usr/caf\u00e9 %20#?");
    EXPECT_FALSE(append(""));
    EXPECT_FALSE(append("a/b"));
    EXPECT_FALSE(URLOf(""));
    EXPECT_FALSE(URLOf(std::string("/a\0b", 4)));
    EXPECT_EQ(PathOf(URLOf("relative").Get()), fs::current_path() / "relative");
    UInt8 small[4];
    EXPECT_FALSE(CFURLGetFileSystemRepresentation(folder.Get(), true, small, sizeof small));
}

TEST(CFBundle, FindsFilesInSubfoldersOfItsResources) {
    const TemporaryFolder folder;
    fs::create_directories(folder / "Resources/Help/a.htm");
    std::ofstream(folder / "Resources/Help/b.htm") << "x";
    const CFHolder<CFBundleRef> bundle(CFBundleCreate(nullptr, URLOf(folder.Path()).Get()));
    const auto found = [&bundle](const char* name) {
        return CFHolder<CFURLRef>(CFBundleCopyResourceURL(
            bundle.Get(), String(name).Get(), String("htm").Get(), String("Help").Get()));
    };
    EXPECT_EQ(PathOf(found("b").Get()), fs::canonical(folder.Path()) / "Resources/Help/b.htm");
    EXPECT_FALSE(found("a")) << "a folder is no resource";
    EXPECT_EQ(CFBundleCreate(nullptr, URLOf(folder / "none").Get()), nullptr);
}

} // namespace
