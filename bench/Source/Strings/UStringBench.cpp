// What a look-up of a localized text does with its strings, beside std::u16string.

#include "Strings/UString.h"

#include "bench/Source/Strings/RandomText.h"

#include <benchmark/benchmark.h>

#include <map>
#include <string>

namespace {

UString Made(const std::string& text, const UString*) {
    return UString(text, UString::kASCII);
}

std::u16string Made(const std::string& text, const std::u16string*) {
    return {text.begin(), text.end()};
}

/// Texts of the lengths that captions and messages have.
template <typename String>
std::vector<String> Captions() {
    std::vector<String> captions;
    for (const std::size_t size : {6, 12, 24, 48}) {
        const std::vector<std::string> texts = RandomTexts(Script::kASCII, size);
        for (std::size_t i = 0; i < 50; ++i)
            captions.push_back(Made(texts[i], static_cast<String*>(nullptr)));
    }
    return captions;
}

template <typename String>
void Copy(benchmark::State& state) {
    const std::vector<String> captions = Captions<String>();
    Rotation caption(captions);
    for (auto _ : state) {
        String copy(caption.Next());
        benchmark::DoNotOptimize(copy);
    }
}
BENCHMARK(Copy<UString>)->Name("CaptionCopy/ours");
BENCHMARK(Copy<std::u16string>)->Name("CaptionCopy/u16string");

template <typename String>
void Equal(benchmark::State& state) {
    const std::vector<String> captions = Captions<String>();
    const std::vector<String> copies = captions;
    Rotation first(captions);
    Rotation second(copies);
    for (auto _ : state)
        benchmark::DoNotOptimize(first.Next() == second.Next());
}
BENCHMARK(Equal<UString>)->Name("CaptionEqual/ours");
BENCHMARK(Equal<std::u16string>)->Name("CaptionEqual/u16string");

template <typename String>
void Less(benchmark::State& state) {
    const std::vector<String> captions = Captions<String>();
    const std::vector<String> copies = captions;
    Rotation first(captions);
    Rotation second(copies);
    for (auto _ : state)
        benchmark::DoNotOptimize(first.Next() < second.Next());
}
BENCHMARK(Less<UString>)->Name("CaptionLess/ours");
BENCHMARK(Less<std::u16string>)->Name("CaptionLess/u16string");

template <typename String>
void LookUp(benchmark::State& state) {
    const std::vector<String> captions = Captions<String>();
    std::map<String, String> texts;
    for (const String& caption : captions)
        texts.emplace(caption, caption);
    Rotation caption(captions);
    for (auto _ : state)
        benchmark::DoNotOptimize(texts.find(caption.Next())->second.length());
}
BENCHMARK(LookUp<UString>)->Name("CaptionLookUp/ours");
BENCHMARK(LookUp<std::u16string>)->Name("CaptionLookUp/u16string");

} // namespace
