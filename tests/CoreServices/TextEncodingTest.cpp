#include <CoreServices/TextEncoding.h>

#include <gtest/gtest.h>

#include <string>

namespace {

const TextEncoding kMacRoman = CreateTextEncoding(kTextEncodingMacRoman, 0, 0);
const TextEncoding kUTF16 = CreateTextEncoding(kTextEncodingUnicodeDefault, 0, 0);

struct Outcome {
    std::string written;
    ByteCount read;
    OSStatus status;
    bool operator==(const Outcome&) const = default;
};

Outcome Convert(TextEncoding from, TextEncoding to, const std::string& input, ByteCount room) {
    TECObjectRef converter = nullptr;
    EXPECT_EQ(TECCreateConverter(&converter, from, to), noErr);
    std::string output(room + 1, '\x55');
    ByteCount read = 0;
    ByteCount written = 0;
    const OSStatus status =
        TECConvertText(converter, reinterpret_cast<ConstTextPtr>(input.data()), input.size(), &read,
                       reinterpret_cast<TextPtr>(output.data()), room, &written);
    EXPECT_EQ(output[room], '\x55');
    EXPECT_EQ(TECDisposeConverter(converter), noErr);
    return {output.substr(0, written), read, status};
}

std::string Bytes(const std::u16string& units) {
    return {reinterpret_cast<const char*>(units.data()), 2 * units.size()};
}

TEST(TextEncodingConverter, ReportsWhatFitsOutOfUTF16) {
    // An accent, a pair and a lone surrogate that Mac Roman lacks, the last character of its table.
    const std::string units = Bytes({'a', 0xE9, 0xD83D, 0xDE00, 0xDC00, 0x02C7});
    const std::string all = "a\x8E??\xFF";
    const ByteCount readFor[] = {0, 2, 4, 8, 10, 12};
    for (ByteCount room = 0; room <= all.size(); ++room) {
        const OSStatus status = room < all.size() ? kTECOutputBufferFullStatus : noErr;
        EXPECT_EQ(Convert(kUTF16, kMacRoman, units, room),
                  (Outcome{all.substr(0, room), readFor[room], status}));
    }
}

TEST(TextEncodingConverter, LeavesAnUnfinishedCharacterUnread) {
    const std::string units = Bytes({'a', 'b', 0xD83D});
    EXPECT_EQ(Convert(kUTF16, kMacRoman, units.substr(0, 1), 9),
              (Outcome{"", 0, kTECPartialCharErr}));
    EXPECT_EQ(Convert(kUTF16, kMacRoman, units.substr(0, 3), 9),
              (Outcome{"a", 2, kTECPartialCharErr}));
    EXPECT_EQ(Convert(kUTF16, kMacRoman, units, 9), (Outcome{"ab", 4, kTECPartialCharErr}));
}

TEST(TextEncodingConverter, ReportsWhatFitsIntoUTF16) {
    const std::string all = Bytes({'a', 0x20AC});
    for (ByteCount room = 0; room <= all.size(); ++room) {
        const OSStatus status = room < all.size() ? kTECOutputBufferFullStatus : noErr;
        EXPECT_EQ(Convert(kMacRoman, kUTF16, "a\xDB", room),
                  (Outcome{all.substr(0, room / 2 * 2), room / 2, status}));
    }
}

TEST(TextEncodingConverter, IsOfferedBetweenMacRomanAndUTF16Only) {
    TECObjectRef converter = nullptr;
    EXPECT_EQ(TECCreateConverter(&converter, kMacRoman, kMacRoman), kTextUnsupportedEncodingErr);
    EXPECT_EQ(TECCreateConverter(&converter, CreateTextEncoding(0, 1, 0), kUTF16),
              kTextUnsupportedEncodingErr);
    EXPECT_EQ(converter, nullptr);
    EXPECT_EQ(TECDisposeConverter(nullptr), paramErr);
}

} // namespace
