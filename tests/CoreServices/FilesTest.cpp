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
    const auto append = [&folder](CFStringRef component) {
        return CFHolder<CFURLRef>(
            CFURLCreateCopyAppendingPathComponent(nullptr, folder.Get(), component, false));
    };
    EXPECT_TRUE(CFEqual(append(CFSTR("a %20#?")).Get(), URLOf("/usr/a %20#?").Get()));
    EXPECT_FALSE(append(CFSTR("")));
    EXPECT_FALSE(append(CFSTR("a/b")));
    EXPECT_FALSE(URLOf(""));
    EXPECT_FALSE(URLOf(std::string("/a\0b", 4)));
    const auto relative = URLOf("relative");
    EXPECT_TRUE(CFEqual(relative.Get(), URLOf(fs::current_path() / "relative").Get()));
    UInt8 small[4];
    EXPECT_FALSE(CFURLGetFileSystemRepresentation(folder.Get(), true, small, sizeof small));
}

TEST(CFBundle, HasNoFoldersForResources) {
    const TemporaryFolder folder;
    fs::create_directories(folder / "Resources/a.htm");
    std::ofstream(folder / "Resources/b.htm") << "x";
    const CFHolder<CFBundleRef> bundle(CFBundleCreate(nullptr, URLOf(folder.Path()).Get()));
    const auto find = [&bundle](CFStringRef name) {
        return CFHolder<CFURLRef>(
            CFBundleCopyResourceURL(bundle.Get(), name, CFSTR("htm"), nullptr));
    };
    EXPECT_TRUE(find(CFSTR("b")));
    EXPECT_FALSE(find(CFSTR("a")));
    EXPECT_EQ(CFBundleCreate(nullptr, URLOf(folder / "none").Get()), nullptr);
}

} // namespace
