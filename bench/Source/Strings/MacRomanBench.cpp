// Mac Roman through the cached converter, beside ICU's own calls with a converter that is opened
// once.

#include "Strings/Transcoders.h"

#include "bench/Source/Strings/RandomText.h"

#include <benchmark/benchmark.h>
#include <unicode/ucnv.h>

#include <memory>

namespace {

constexpr std::size_t kSize = 1024;

struct CloseConverter {
    void operator()(UConverter* converter) const { ucnv_close(converter); }
};
using ConverterHolder = std::unique_ptr<UConverter, CloseConverter>;

ConverterHolder OpenMacRoman() {
    UErrorCode error = U_ZERO_ERROR;
    return ConverterHolder(ucnv_open("macos-0_2-10.2", &error));
}

/// French text as Mac Roman bytes and as units.
struct Text {
    std::string bytes;
    UTF16String units;
};

const Text& AccentedText() {
    static const Text text = [] {
        Text made;
        const std::string utf8 = RandomTexts(Script::kAccentedLatin, kSize).front();
        utf8_to_utf16(reinterpret_cast<const unsigned char*>(utf8.data()), utf8.size(), made.units);
        utf16_to_MacRoman(made.units.data(), made.units.size(), made.bytes);
        MacRoman_to_utf16(reinterpret_cast<const unsigned char*>(made.bytes.data()),
                          made.bytes.size(), made.units);
        return made;
    }();
    return text;
}

void DecodeOurs(benchmark::State& state) {
    const std::string& source = AccentedText().bytes;
    UTF16String out;
    for (auto _ : state) {
        benchmark::DoNotOptimize(MacRoman_to_utf16(
            reinterpret_cast<const unsigned char*>(source.data()), source.size(), out));
        benchmark::ClobberMemory();
    }
}
BENCHMARK(DecodeOurs)->Name("MacRomanToUtf16/1KiB/ours");

void DecodeWithICU(benchmark::State& state) {
    const std::string& source = AccentedText().bytes;
    const ConverterHolder converter = OpenMacRoman();
    std::vector<UChar> out(source.size() + 1);
    for (auto _ : state) {
        UErrorCode error = U_ZERO_ERROR;
        benchmark::DoNotOptimize(ucnv_toUChars(converter.get(), out.data(),
                                               static_cast<int32_t>(out.size()), source.data(),
                                               static_cast<int32_t>(source.size()), &error));
        benchmark::ClobberMemory();
    }
}
BENCHMARK(DecodeWithICU)->Name("MacRomanToUtf16/1KiB/ICU");

void EncodeOurs(benchmark::State& state) {
    const UTF16String& source = AccentedText().units;
    std::string out;
    for (auto _ : state) {
        benchmark::DoNotOptimize(utf16_to_MacRoman(source.data(), source.size(), out));
        benchmark::ClobberMemory();
    }
}
BENCHMARK(EncodeOurs)->Name("Utf16ToMacRoman/1KiB/ours");

void EncodeWithICU(benchmark::State& state) {
    const UTF16String& source = AccentedText().units;
    const ConverterHolder converter = OpenMacRoman();
    std::vector<char> out(source.size() + 1);
    for (auto _ : state) {
        UErrorCode error = U_ZERO_ERROR;
        benchmark::DoNotOptimize(ucnv_fromUChars(converter.get(), out.data(),
                                                 static_cast<int32_t>(out.size()),
                                                 reinterpret_cast<const UChar*>(source.data()),
                                                 static_cast<int32_t>(source.size()), &error));
        benchmark::ClobberMemory();
    }
}
BENCHMARK(EncodeWithICU)->Name("Utf16ToMacRoman/1KiB/ICU");

} // namespace
