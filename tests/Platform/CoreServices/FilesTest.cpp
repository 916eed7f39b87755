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

} // namespace
