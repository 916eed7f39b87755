#include <CoreServices/TextEncoding.h>

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace {

struct Dispose {
    void operator()(TECObjectRef converter) const { TECDisposeConverter(converter); }
};
using ConverterHolder = std::unique_ptr<TextEncodingConverter, Dispose>;

const TextEncoding kMacRoman = CreateTextEncoding(kTextEncodingMacRoman, 0, 0);
const TextEncoding kUTF16 = CreateTextEncoding(kTextEncodingUnicodeDefault, 0, 0);

ConverterHolder Converter(TextEncoding from, TextEncoding to) {
    TECObjectRef converter = nullptr;
    EXPECT_EQ(TECCreateConverter(&converter, from, to), noErr);
    return ConverterHolder(converter);
}

struct Outcome {
    std::string written;
    ByteCount read;
    OSStatus status;
    bool operator==(const Outcome&) const = default;
};

Outcome Convert(const ConverterHolder& converter, const void* input, ByteCount length,
                ByteCount room) {
    std::string output(room + 1, '\x55');
    ByteCount read = 0;
    ByteCount written = 0;
    const OSStatus status =
        TECConvertText(converter.get(), static_cast<ConstTextPtr>(input), length, &read,
                       reinterpret_cast<TextPtr>(output.data()), room, &written);
    EXPECT_EQ(output[room], '\x55');
    return {output.substr(0, written), read, status};
}

TEST(TextEncodingConverter, ReportsWhatFitsOutOfUTF16) {
    const ConverterHolder converter = Converter(kUTF16, kMacRoman);
    // An accent, a pair and a lone surrogate that Mac Roman lacks, the last character of its table.
    const UniChar units[] = {'a', 0xE9, 0xD83D, 0xDE00, 0xDC00, 0x02C7};
    const std::string all = "a\x8E??\xFF";
    const ByteCount readFor[] = {0, 2, 4, 8, 10, 12};
    for (ByteCount room = 0; room <= all.size(); ++room) {
        const OSStatus status = room < all.size() ? kTECOutputBufferFullStatus : noErr;
        EXPECT_EQ(Convert(converter, units, sizeof units, room),
                  (Outcome{all.substr(0, room), readFor[room], status}));
    }
}

TEST(TextEncodingConverter, LeavesAnUnfinishedCharacterUnread) {
    const ConverterHolder converter = Converter(kUTF16, kMacRoman);
    const UniChar units[] = {'a', 'b', 0xD83D};
    EXPECT_EQ(Convert(converter, units, 3, 9), (Outcome{"a", 2, kTECPartialCharErr}));
    EXPECT_EQ(Convert(converter, units, 6, 9), (Outcome{"ab", 4, kTECPartialCharErr}));
    EXPECT_EQ(Convert(converter, units, 1, 9), (Outcome{"", 0, kTECPartialCharErr}));
    EXPECT_EQ(Convert(converter, units, 4, 9), (Outcome{"ab", 4, noErr}));
}

TEST(TextEncodingConverter, ReportsWhatFitsIntoUTF16) {
    const ConverterHolder converter = Converter(kMacRoman, kUTF16);
    EXPECT_EQ(TECClearConverterContextInfo(converter.get()), noErr);
    const UniChar expected[] = {'a', 0x20AC};
    const std::string all(reinterpret_cast<const char*>(expected), sizeof expected);
    EXPECT_EQ(Convert(converter, "a\xDB", 2, 9), (Outcome{all, 2, noErr}));
    EXPECT_EQ(Convert(converter, "a\xDB", 2, 3),
              (Outcome{all.substr(0, 2), 1, kTECOutputBufferFullStatus}));
    EXPECT_EQ(Convert(converter, "a\xDB", 2, 1), (Outcome{"", 0, kTECOutputBufferFullStatus}));
}

TEST(TextEncodingConverter, IsOfferedBetweenMacRomanAndUTF16Only) {
    TECObjectRef converter = nullptr;
    EXPECT_EQ(TECCreateConverter(&converter, kMacRoman, kMacRoman), kTextUnsupportedEncodingErr);
    EXPECT_EQ(TECCreateConverter(&converter, CreateTextEncoding(0, 1, 0), kUTF16),
              kTextUnsupportedEncodingErr);
    EXPECT_EQ(converter, nullptr);
    EXPECT_EQ(Convert(ConverterHolder(), "a", 1, 4), (Outcome{"", 0, paramErr}));
    EXPECT_EQ(TECDisposeConverter(nullptr), paramErr);
}

} // namespace
