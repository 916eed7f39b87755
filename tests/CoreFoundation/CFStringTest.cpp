#include "Platform/CoreFoundation/CFHolder.h"

#include <CoreFoundation/CoreFoundation.h>

#include <gtest/gtest.h>

#include <string>

namespace {

using StringHolder = CFHolder<CFStringRef>;

StringHolder FromUTF8(const std::string& bytes, Boolean external = false) {
    return StringHolder(CFStringCreateWithBytes(
        kCFAllocatorDefault, reinterpret_cast<const UInt8*>(bytes.data()),
        static_cast<CFIndex>(bytes.size()), kCFStringEncodingUTF8, external));
}

TEST(CFString, IsMadeFromWellFormedBytesOnly) {
    const UniChar units[] = {'A', 0, 0xE9, 0xD83D, 0xDE00};
    const StringHolder string(CFStringCreateWithCharacters(nullptr, units, 5));
    EXPECT_TRUE(CFEqual(FromUTF8({"A\0\xC3\xA9\xF0\x9F\x98\x80", 8}).Get(), string.Get()));
    for (const char* bytes : {"a\xFF", "\xC3", "\xC0\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80"})
        EXPECT_FALSE(FromUTF8(bytes));
    EXPECT_EQ(CFStringGetLength(FromUTF8("\xEF\xBB\xBFx", true).Get()), 1);
    EXPECT_EQ(CFStringGetLength(FromUTF8("\xEF\xBB\xBFx", false).Get()), 2);
    EXPECT_EQ(CFStringCreateWithCString(nullptr, "\xE9", kCFStringEncodingASCII), nullptr);
    EXPECT_EQ(CFStringCreateWithCString(nullptr, "a", 0x0201), nullptr);
}

TEST(CFString, WritesBytesThatFitAtACharactersBoundary) {
    const StringHolder string = FromUTF8("a\xE2\x82\xAC\xF0\x9F\x98\x80");
    char text[16];
    EXPECT_TRUE(CFStringGetCString(string.Get(), text, 9, CFStringGetSystemEncoding()));
    EXPECT_STREQ(text, "a\xE2\x82\xAC\xF0\x9F\x98\x80");
    EXPECT_FALSE(CFStringGetCString(string.Get(), text, 8, kCFStringEncodingUTF8));
    EXPECT_FALSE(CFStringGetCString(string.Get(), text, 16, kCFStringEncodingASCII));
    const UniChar half = 0xD83D;
    const StringHolder torn(CFStringCreateWithCharacters(nullptr, &half, 1));
    EXPECT_FALSE(CFStringGetCString(torn.Get(), text, 16, kCFStringEncodingUTF8));

    CFIndex used = 0;
    const auto convert = [&](CFRange range, UInt8 loss, CFIndex capacity) {
        return CFStringGetBytes(string.Get(), range,
                                loss ? kCFStringEncodingASCII : kCFStringEncodingUTF8, loss, false,
                                reinterpret_cast<UInt8*>(text), capacity, &used);
    };
    EXPECT_EQ(convert({0, 4}, 0, 7), 2);
    EXPECT_EQ(used, 4);
    EXPECT_EQ(convert({0, 4}, '?', 16), 4);
    EXPECT_EQ(std::string(text, static_cast<std::size_t>(used)), "a??");
}

TEST(CFString, FindsAnchoredAndFreeRuns) {
    const struct {
        const char* wanted;
        CFRange range;
        CFStringCompareFlags options;
        CFIndex location;
    } cases[] = {
        {"urface", {0, 15}, kCFCompareAnchored, -1},
        {"urface", {1, 14}, kCFCompareAnchored, 1},
        {"surface", {0, 15}, 0, -1},
        {"Surface", {1, 14}, 0, 8},
        {"Surface", {0, 15}, kCFCompareBackwards, 8},
        {"Surface", {0, 14}, kCFCompareBackwards | kCFCompareAnchored, -1},
        {"Surface Surface longer", {0, 15}, kCFCompareAnchored, -1},
        {"", {0, 15}, kCFCompareAnchored, -1},
    };
    for (const auto& [wanted, range, options, location] : cases) {
        CFRange found = {-1, -1};
        const Boolean answer = CFStringFindWithOptions(
            CFSTR("Surface Surface"), FromUTF8(wanted).Get(), range, options, &found);
        EXPECT_EQ(found.location, location) << wanted;
        EXPECT_EQ(answer, location >= 0) << wanted;
    }
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
