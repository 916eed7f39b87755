#include <CoreFoundation/CFHolder.h>
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
    const auto convert = [&](CFStringEncoding encoding, CFIndex capacity) {
        return CFStringGetBytes(string.Get(), {0, 4}, encoding, '?', false,
                                reinterpret_cast<UInt8*>(text), capacity, &used);
    };
    EXPECT_EQ(convert(kCFStringEncodingUTF8, 7), 2);
    EXPECT_EQ(used, 4);
    EXPECT_EQ(convert(kCFStringEncodingASCII, 16), 4);
    EXPECT_EQ(std::string(text, static_cast<std::size_t>(used)), "a??");
}

} // namespace
