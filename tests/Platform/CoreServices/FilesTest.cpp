#include "tests/support/TemporaryFolder.h"

#include <CoreFoundation/CFHolder.h>
#include <CoreServices/CoreServices.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

namespace {

namespace fs = std::filesystem;
using namespace std::literals;

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
    const auto make = [&parent](std::string_view name) {
        const std::basic_string<UniChar> units(name.begin(), name.end());
        FSRef made{};
        return FSMakeFSRefUnicode(&parent, units.size(), units.data(), kTextEncodingUnknown, &made);
    };
    EXPECT_EQ(make("a"), noErr);
    for (const char* name : {"b", "dangling"})
        EXPECT_EQ(make(name), fnfErr) << name;
    for (const std::string_view name : {""sv, ".."sv, "a/"sv, "a\0"sv})
        EXPECT_EQ(make(name), bdNamErr) << name;
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

} // namespace
