// UTF-8 to UTF-16 and back, beside ICU, Qt and the C library. All but Qt, whose strings are their
// own storage, write into memory that is used over and over. Qt, ICU and iconv read and write
// standard surrogates; no text here holds any.

#include "Strings/Transcoders.h"

#include "bench/Source/Strings/RandomText.h"

#include <benchmark/benchmark.h>
#include <iconv.h>
#include <unicode/ustring.h>

#include <QString>
#include <functional>
#include <memory>

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

class IconvConverter {
public:
    IconvConverter(const char* to, const char* from, std::size_t room)
        : fDescriptor(iconv_open(to, from))
        , fOut(room) {}
    ~IconvConverter() { iconv_close(fDescriptor); }
    IconvConverter(const IconvConverter&) = delete;
    IconvConverter& operator=(const IconvConverter&) = delete;

    void Convert(const void* source, std::size_t bytes) {
        char* in = static_cast<char*>(const_cast<void*>(source));
        char* out = fOut.data();
        std::size_t room = fOut.size();
        iconv(fDescriptor, &in, &bytes, &out, &room);
        benchmark::DoNotOptimize(out);
        benchmark::ClobberMemory();
    }

private:
    iconv_t fDescriptor;
    std::vector<char> fOut;
};

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

void DecodeWithIconv(benchmark::State& state, const Texts& texts) {
    Rotation text(texts.utf8);
    IconvConverter converter("UTF-16LE", "UTF-8", 2 * texts.utf8.front().size());
    for (auto _ : state) {
        const std::string& source = text.Next();
        converter.Convert(source.data(), source.size());
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

void EncodeWithIconv(benchmark::State& state, const Texts& texts) {
    Rotation text(texts.utf16);
    IconvConverter converter("UTF-8", "UTF-16LE", texts.utf8.front().size());
    for (auto _ : state) {
        const std::u16string& source = text.Next();
        converter.Convert(source.data(), 2 * source.size());
    }
}

using Run = void (*)(benchmark::State&, const Texts&);

void Register(const std::string& cell, const char* contender, Run run,
              const std::shared_ptr<const Texts>& texts) {
    benchmark::RegisterBenchmark(
        (cell + '/' + contender).c_str(), [run, texts](benchmark::State& state) {
            run(state, *texts);
            state.SetBytesProcessed(state.iterations() *
                                    static_cast<int64_t>(texts->utf8.front().size()));
        });
}

void RegisterCell(const std::string& cell, const std::shared_ptr<const Texts>& texts) {
    Register("Utf8ToUtf16/" + cell, "ours", DecodeOurs, texts);
    Register("Utf8ToUtf16/" + cell, "ICU", DecodeWithICU, texts);
    Register("Utf8ToUtf16/" + cell, "Qt", DecodeWithQt, texts);
    Register("Utf8ToUtf16/" + cell, "iconv", DecodeWithIconv, texts);
    Register("Utf16ToUtf8/" + cell, "ours", EncodeOurs, texts);
    Register("Utf16ToUtf8/" + cell, "ICU", EncodeWithICU, texts);
    Register("Utf16ToUtf8/" + cell, "Qt", EncodeWithQt, texts);
    Register("Utf16ToUtf8/" + cell, "iconv", EncodeWithIconv, texts);
}

[[maybe_unused]] const bool kRegistered = [] {
    const std::pair<const char*, Script> scripts[] = {{"ASCII", Script::kASCII},
                                                      {"Latin", Script::kAccentedLatin},
                                                      {"CyrillicCJK", Script::kCyrillicAndCJK}};
    const std::pair<const char*, std::size_t> sizes[] = {
        {"64B", 64}, {"1KiB", 1024}, {"1MiB", std::size_t{1} << 20}};
    for (const auto& [scriptName, script] : scripts) {
        for (const auto& [sizeName, size] : sizes)
            RegisterCell(std::string(scriptName) + '/' + sizeName,
                         std::make_shared<const Texts>(MakeTexts(script, size)));
    }
    return true;
}();

} // namespace
