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

TEST(TextEncodingConverter, ReportsWhatFits) {
    // An accent, a pair and a lone surrogate that Mac Roman lacks, the last character of its table.
    const std::string units = Bytes({'a', 0xE9, 0xD83D, 0xDE00, 0xDC00, 0x02C7});
    const ByteCount readFor[] = {0, 2, 4, 8, 10, 12};
    for (ByteCount room = 0; room <= 5; ++room) {
        const OSStatus status = room < 5 ? kTECOutputBufferFullStatus : noErr;
        EXPECT_EQ(Convert(kUTF16, kMacRoman, units, room),
                  (Outcome{std::string("a\x8E??\xFF", room), readFor[room], status}));
    }
    EXPECT_EQ(Convert(kMacRoman, kUTF16, "a\xDB", 3),
              (Outcome{Bytes({'a'}), 1, kTECOutputBufferFullStatus}));
    EXPECT_EQ(Convert(kMacRoman, kUTF16, "a\xDB", 4), (Outcome{Bytes({'a', 0x20AC}), 2, noErr}));
}

TEST(TextEncodingConverter, LeavesAnUnfinishedCharacterUnread) {
    const std::string units = Bytes({'a', 'b', 0xD83D});
    for (const ByteCount size : {1, 3, 6}) {
        const ByteCount read = (size - 1) / 2 * 2;
        EXPECT_EQ(Convert(kUTF16, kMacRoman, units.substr(0, size), 9),
                  (Outcome{std::string("ab", read / 2), read, kTECPartialCharErr}));
    }
}

TEST(TextEncodingConverter, IsOfferedBetweenMacRomanAndUTF16Only) {
    TECObjectRef converter = nullptr;
    EXPECT_EQ(TECCreateConverter(&converter, kMacRoman, kMacRoman), kTextUnsupportedEncodingErr);
    EXPECT_EQ(TECCreateConverter(&converter, CreateTextEncoding(0, 1, 0), kUTF16),
              kTextUnsupportedEncodingErr);
    EXPECT_EQ(TECDisposeConverter(converter), paramErr);
}

} // namespace
