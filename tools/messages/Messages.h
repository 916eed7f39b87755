#pragma once

#include <array>
#include <concepts>
#include <cstddef>
#include <span>
#include <string>

// What the tools say, in the user's language. English texts stand in the code; tools/messages/po
// has what they are in other languages. A text is a whole sentence, or stands alone in a list; its
// places %1 to %9 take arguments, in whatever order a translation needs them.

/// Finds the user's language as gettext does, by LANGUAGE, LC_ALL, LC_MESSAGES and LANG. Numbers
/// and dates stay as they are. To be called before anything is said.
void UseLanguageOfUser();

/// From here on English: for what other programs read.
void UseEnglish();

/// `list`, empty or not, with one more item behind it.
std::string Listed(const std::string& list, const std::string& item);

/// Marks a text that is looked up elsewhere, by Filled.
constexpr const char* Marked(const char* english) {
    return english;
}

/// The text in the user's language, with these arguments in its places.
std::string Filled(const char* english, std::span<const std::string> arguments = {});
std::string FilledCount(const char* one, const char* many, unsigned long count,
                        std::span<const std::string> arguments);

/// A text that has exactly as many places as there are arguments, or it does not compile.
template <typename... Arguments>
struct TextWithPlaces {
    consteval TextWithPlaces(const char* english)
        : text(english) {
        unsigned places = 0;
        for (; *english != '\0'; ++english) {
            if (english[0] == '%' && english[1] >= '1' && english[1] <= '9')
                places |= 1U << static_cast<unsigned>(english[1] - '1');
        }
        if (places != (1U << sizeof...(Arguments)) - 1)
            throw "as many places as arguments";
    }
    const char* text;
};

inline std::string ArgumentText(std::string text) {
    return text;
}
std::string ArgumentText(std::integral auto number) {
    return std::to_string(number);
}

/// What the text is in the user's language, with the arguments (texts in UTF-8, whole numbers).
template <typename... Arguments>
std::string Message(TextWithPlaces<std::type_identity_t<Arguments>...> english,
                    const Arguments&... arguments) {
    return Filled(english.text,
                  std::array<std::string, sizeof...(Arguments)>{ArgumentText(arguments)...});
}

/// The same in the form that the language has for `count`, which is %1.
template <typename... Arguments>
std::string Counted(TextWithPlaces<int, std::type_identity_t<Arguments>...> one,
                    TextWithPlaces<int, std::type_identity_t<Arguments>...> many, std::size_t count,
                    const Arguments&... arguments) {
    return FilledCount(one.text, many.text, count,
                       std::array<std::string, sizeof...(Arguments) + 1>{
                           ArgumentText(count), ArgumentText(arguments)...});
}
