#pragma once

#include <cstddef>
#include <string>
#include <vector>

/// What the benchmarks' texts are made of.
enum class Script { kASCII, kAccentedLatin, kCyrillicAndCJK };

/// Texts of exactly `size` bytes of UTF-8 each, words of the script in random order: together a
/// mebibyte, so that no branch predictor learns them by heart. Every call returns the same.
std::vector<std::string> RandomTexts(Script script, std::size_t size);

/// Passes through elements over and over.
template <typename Element>
class Rotation {
public:
    explicit Rotation(const std::vector<Element>& elements)
        : fElements(elements) {}

    const Element& Next() {
        fNext = fNext + 1 == fElements.size() ? 0 : fNext + 1;
        return fElements[fNext];
    }

private:
    const std::vector<Element>& fElements;
    std::size_t fNext = 0;
};
