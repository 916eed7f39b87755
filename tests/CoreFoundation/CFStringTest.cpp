#include "Platform/CoreFoundation/CFHolder.h"

#include <CoreFoundation/CoreFoundation.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using StringHolder = CFHolder<CFStringRef>;

StringHolder FromUTF8(const std::string& bytes, Boolean external = false) {
    return StringHolder(CFStringCreateWithBytes(
        kCFAllocatorDefault, reinterpret_cast<const UInt8*>(bytes.data()),
        static_cast<CFIndex>(bytes.size()), kCFStringEncodingUTF8, external));
}

StringHolder FromUnits(const std::vector<UniChar>& units) {
    return StringHolder(CFStringCreateWithCharacters(kCFAllocatorDefault, units.data(),
                                                     static_cast<CFIndex>(units.size())));
}

std::vector<UniChar> UnitsOf(CFStringRef string) {
    std::vector<UniChar> units(static_cast<std::size_t>(CFStringGetLength(string)));
    CFStringGetCharacters(string, CFRangeMake(0, CFStringGetLength(string)), units.data());
    return units;
}

TEST(CFString, IsMadeFromWellFormedBytesOnly) {
    EXPECT_EQ(UnitsOf(FromUTF8("A\xC3\xA9\xF0\x9F\x98\x80").Get()),
              (std::vector<UniChar>{'A', 0xE9, 0xD83D, 0xDE00}));
    EXPECT_EQ(UnitsOf(FromUTF8(std::string("a\0b", 3)).Get()), (std::vector<UniChar>{'a', 0, 'b'}));
    for (const char* bytes : {"a\xFF", "\xC3", "\xC0\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80"})
        EXPECT_FALSE(FromUTF8(bytes));
    EXPECT_EQ(CFStringGetLength(FromUTF8("\xEF\xBB\xBFx", true).Get()), 1);
    EXPECT_EQ(CFStringGetLength(FromUTF8("\xEF\xBB\xBFx", false).Get()), 2);
    EXPECT_EQ(CFStringCreateWithCString(kCFAllocatorDefault, "\xE9", kCFStringEncodingASCII),
              nullptr);
    EXPECT_EQ(CFStringCreateWithCString(kCFAllocatorDefault, "a", 0x0201), nullptr);
}

TEST(CFString, WritesBytesThatFitAtACharactersBoundary) {
    const StringHolder string = FromUTF8("a\xE2\x82\xAC\xF0\x9F\x98\x80");
    char text[16];
    EXPECT_TRUE(CFStringGetCString(string.Get(), text, 9, CFStringGetSystemEncoding()));
    EXPECT_STREQ(text, "a\xE2\x82\xAC\xF0\x9F\x98\x80");
    EXPECT_FALSE(CFStringGetCString(string.Get(), text, 8, kCFStringEncodingUTF8));
    EXPECT_FALSE(CFStringGetCString(string.Get(), text, 0, kCFStringEncodingUTF8));
    EXPECT_FALSE(CFStringGetCString(string.Get(), text, 16, kCFStringEncodingASCII));
    EXPECT_FALSE(CFStringGetCString(FromUnits({0xD83D}).Get(), text, 16, kCFStringEncodingUTF8));

    CFIndex used = 0;
    const auto convert = [&](CFRange range, UInt8 loss, UInt8* buffer, CFIndex capacity) {
        return CFStringGetBytes(string.Get(), range,
                                loss ? kCFStringEncodingASCII : kCFStringEncodingUTF8, loss, false,
                                buffer, capacity, &used);
    };
    auto* const bytes = reinterpret_cast<UInt8*>(text);
    EXPECT_EQ(convert({0, 4}, 0, bytes, 7), 2);
    EXPECT_EQ(std::string(text, static_cast<std::size_t>(used)), "a\xE2\x82\xAC");
    EXPECT_EQ(convert({1, 3}, 0, nullptr, 0), 3);
    EXPECT_EQ(used, 7);
    EXPECT_EQ(convert({0, 4}, '?', bytes, 16), 4);
    EXPECT_EQ(std::string(text, static_cast<std::size_t>(used)), "a??");
}

TEST(CFString, FindsAnchoredAndFreeRuns) {
    const StringHolder string = FromUTF8("Surface Surface");
    const auto find = [&](const char* wanted, CFRange range, CFStringCompareFlags options) {
        CFRange found = {-1, -1};
        const Boolean answer =
            CFStringFindWithOptions(string.Get(), FromUTF8(wanted).Get(), range, options, &found);
        EXPECT_EQ(answer, found.location >= 0);
        return found.location;
    };
    EXPECT_EQ(find("Surface", {0, 15}, kCFCompareAnchored), 0);
    EXPECT_EQ(find("urface", {0, 15}, kCFCompareAnchored), -1);
    EXPECT_EQ(find("urface", {1, 14}, kCFCompareAnchored), 1);
    EXPECT_EQ(find("surface", {0, 15}, 0), -1);
    EXPECT_EQ(find("Surface", {1, 14}, 0), 8);
    EXPECT_EQ(find("Surface", {0, 15}, kCFCompareBackwards), 8);
    EXPECT_EQ(find("Surface", {0, 14}, kCFCompareBackwards | kCFCompareAnchored), -1);
    EXPECT_EQ(find("Surface Surface longer", {0, 15}, kCFCompareAnchored), -1);
    EXPECT_EQ(find("", {0, 15}, kCFCompareAnchored), -1);
    EXPECT_TRUE(CFStringFindWithOptions(string.Get(), CFSTR("Sur"), {0, 15}, 0, nullptr));
}

TEST(CFObjects, AreEqualByKindAndContent) {
    const UInt8 bytes[] = {'a', 0, 0xFF};
    const CFHolder<CFDataRef> data(CFDataCreate(kCFAllocatorDefault, bytes, 3));
    const CFHolder<CFDataRef> same(CFDataCreate(kCFAllocatorDefault, bytes, 3));
    const CFHolder<CFDataRef> empty(CFDataCreate(kCFAllocatorDefault, nullptr, 0));
    EXPECT_TRUE(CFEqual(data.Get(), same.Get()));
    EXPECT_FALSE(CFEqual(data.Get(), empty.Get()));
    EXPECT_FALSE(CFEqual(FromUTF8("").Get(), empty.Get()));
    EXPECT_TRUE(CFEqual(FromUTF8("name").Get(), CFSTR("name")));
    EXPECT_EQ(CFSTR("name"), CFStringMakeConstantString(std::string("name").c_str()));
    EXPECT_EQ(CFDataGetLength(data.Get()), 3);
    EXPECT_EQ(CFDataGetBytePtr(data.Get())[2], 0xFF);
}

TEST(CFHolder, GivesBackWhatItOwnsOnce) {
    StringHolder first = FromUTF8("text");
    StringHolder copy = first;
    first = std::move(copy);
    first = StringHolder::Sharing(first.Get());
    *first.Receive() = FromUTF8("other").Detach();
    EXPECT_EQ(CFStringGetLength(first.Get()), 5);
    EXPECT_FALSE(copy);
}

} // namespace
