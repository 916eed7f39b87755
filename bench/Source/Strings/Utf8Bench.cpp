// UTF-8 to UTF-16 and back, beside ICU and Qt. All but Qt, whose strings are their own storage,
// write into memory that is used over and over. Qt and ICU read and write standard surrogates; no
// text here holds any.

#include "Strings/Transcoders.h"

#include "bench/Source/Strings/RandomText.h"

#include <benchmark/benchmark.h>
#include <unicode/ustring.h>

#include <QString>
#include <deque>
#include <functional>

namespace {

/// The same texts in both encodings.
struct Texts {
    std::vector<std::string> utf8;
    std::vector<std::u16string> utf16;
};

Texts MakeTexts(Script script, std::size_t size) {
    Texts texts{RandomTexts(script, size), {}};
    for (const std::string& text : texts.utf8)
        texts.utf16.push_back(QString::fromStdString(text).toStdU16String());
    return texts;
}

void DecodeOurs(benchmark::State& state, const Texts& texts) {
    Rotation text(texts.utf8);
    UTF16String out;
    for (auto _ : state) {
        const std::string& source = text.Next();
        benchmark::DoNotOptimize(utf8_to_utf16(
            reinterpret_cast<const unsigned char*>(source.data()), source.size(), out));
        benchmark::ClobberMemory();
    }
}

void DecodeWithICU(benchmark::State& state, const Texts& texts) {
    Rotation text(texts.utf8);
    std::vector<UChar> out(texts.utf8.front().size() + 1);
    for (auto _ : state) {
        const std::string& source = text.Next();
        int32_t written = 0;
        UErrorCode error = U_ZERO_ERROR;
        u_strFromUTF8(out.data(), static_cast<int32_t>(out.size()), &written, source.data(),
                      static_cast<int32_t>(source.size()), &error);
        benchmark::DoNotOptimize(written);
        benchmark::ClobberMemory();
    }
}

void DecodeWithQt(benchmark::State& state, const Texts& texts) {
    Rotation text(texts.utf8);
    for (auto _ : state) {
        const std::string& source = text.Next();
        benchmark::DoNotOptimize(
            QString::fromUtf8(source.data(), static_cast<qsizetype>(source.size())));
    }
}

void EncodeOurs(benchmark::State& state, const Texts& texts) {
    Rotation text(texts.utf16);
    std::string out;
    for (auto _ : state) {
        const std::u16string& source = text.Next();
        benchmark::DoNotOptimize(utf16_to_utf8(
            reinterpret_cast<const unsigned short*>(source.data()), source.size(), out));
        benchmark::ClobberMemory();
    }
}

void EncodeWithICU(benchmark::State& state, const Texts& texts) {
    Rotation text(texts.utf16);
    std::vector<char> out(texts.utf8.front().size() + 1);
    for (auto _ : state) {
        const std::u16string& source = text.Next();
        int32_t written = 0;
        UErrorCode error = U_ZERO_ERROR;
        u_strToUTF8(out.data(), static_cast<int32_t>(out.size()), &written, source.data(),
                    static_cast<int32_t>(source.size()), &error);
        benchmark::DoNotOptimize(written);
        benchmark::ClobberMemory();
    }
}

void EncodeWithQt(benchmark::State& state, const Texts& texts) {
    std::vector<QString> sources;
    for (const std::u16string& source : texts.utf16)
        sources.push_back(QString::fromStdU16String(source));
    Rotation text(sources);
    for (auto _ : state)
        benchmark::DoNotOptimize(text.Next().toUtf8());
}

void Register(const std::string& cell, const Texts& texts) {
    const auto add = [&](const std::string& direction, const char* contender, auto* run) {
        benchmark::RegisterBenchmark((direction + cell + contender).c_str(), run, std::cref(texts));
    };
    add("Utf8ToUtf16/", "/ours", DecodeOurs);
    add("Utf8ToUtf16/", "/ICU", DecodeWithICU);
    add("Utf8ToUtf16/", "/Qt", DecodeWithQt);
    add("Utf16ToUtf8/", "/ours", EncodeOurs);
    add("Utf16ToUtf8/", "/ICU", EncodeWithICU);
    add("Utf16ToUtf8/", "/Qt", EncodeWithQt);
}

[[maybe_unused]] const bool kRegistered = [] {
    static std::deque<Texts> allTexts;
    const std::pair<const char*, Script> scripts[] = {{"ASCII", Script::kASCII},
                                                      {"Latin", Script::kAccentedLatin},
                                                      {"CyrillicCJK", Script::kCyrillicAndCJK}};
    const std::pair<const char*, std::size_t> sizes[] = {
        {"64B", 64}, {"1KiB", 1024}, {"1MiB", std::size_t{1} << 20}};
    for (const auto& [scriptName, script] : scripts) {
        for (const auto& [sizeName, size] : sizes)
            Register(std::string(scriptName) + '/' + sizeName,
                     allTexts.emplace_back(MakeTexts(script, size)));
    }
    return true;
}();

} // namespace
