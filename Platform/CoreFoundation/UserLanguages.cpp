#include "Platform/CoreFoundation/UserLanguages.h"

#include <cstdlib>
#include <string_view>

namespace KestrinMIDI {

namespace {

std::string_view Variable(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

/// The variable that counts: as for every program, an empty one does not.
std::string_view RequestedLanguages() {
    for (const char* name : {"LANGUAGE", "LC_ALL", "LC_MESSAGES", "LANG"}) {
        if (const std::string_view value = Variable(name); !value.empty())
            return value;
    }
    return {};
}

bool IsPlainCopy(std::string_view language) {
    return language == "en" || language == "C" || language == "POSIX";
}

/// "fr_CH" of "fr_CH.UTF-8" and of "fr_CH@euro"; nothing of what could lead out of the resources.
std::string_view LanguageOf(std::string_view locale) {
    if (locale.find('/') != std::string_view::npos || locale.find("..") != std::string_view::npos)
        return {};
    return locale.substr(0, locale.find_first_of(".@"));
}

/// Adds a language and what it is a kind of. False at the plain copy, where the search ends.
bool Add(std::string_view language, std::vector<std::string>& languages) {
    if (IsPlainCopy(language))
        return false;
    if (!language.empty())
        languages.emplace_back(language);
    const std::size_t territory = language.find('_');
    return territory == std::string_view::npos || Add(language.substr(0, territory), languages);
}

} // namespace

std::vector<std::string> UserLanguages() {
    std::vector<std::string> languages;
    std::string_view rest = RequestedLanguages();
    while (!rest.empty()) {
        const std::size_t end = rest.find(':');
        if (!Add(LanguageOf(rest.substr(0, end)), languages))
            break;
        rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    }
    return languages;
}

} // namespace KestrinMIDI
