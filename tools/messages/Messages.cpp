#include "tools/messages/Messages.h"

#include <libintl.h>

#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <string_view>

namespace {

constexpr const char* kDomain = "sorvex-mackie-setup";
constexpr const char* kPlainLocale = "C.UTF-8";

/// What names the locale of messages; null where nothing does.
const char* WantedLocale() {
    for (const char* const name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const char* const value = std::getenv(name);
        if (value && *value)
            return value;
    }
    return nullptr;
}

/// Where the catalogues stand, installed or as built: both times in one place beside the program.
std::filesystem::path CatalogueFolder() {
    std::error_code none;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", none);
    return (program.parent_path() / "../share/locale").lexically_normal();
}

std::string WithArguments(std::string_view text, std::span<const std::string> arguments) {
    std::string filled;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto place = text[i] == '%' && i + 1 < text.size()
                               ? static_cast<std::size_t>(text[i + 1] - '1')
                               : arguments.size();
        if (place < arguments.size()) {
            filled += arguments[place];
            ++i;
        } else {
            filled += text[i];
        }
    }
    return filled;
}

} // namespace

void UseLanguageOfUser() {
    const char* const wanted = WantedLocale();
    // A language is also known where the machine lacks its locale, and where LANGUAGE stands alone.
    if (!std::setlocale(LC_MESSAGES, wanted ? "" : kPlainLocale)) {
        setenv("LANGUAGE", wanted ? wanted : "", 0);
        std::setlocale(LC_MESSAGES, kPlainLocale);
    }
    std::setlocale(LC_CTYPE, kPlainLocale);
    bindtextdomain(kDomain, CatalogueFolder().c_str());
    bind_textdomain_codeset(kDomain, "UTF-8");
    textdomain(kDomain);
}

void UseEnglish() {
    std::setlocale(LC_MESSAGES, "C");
}

std::string Listed(const std::string& list, const std::string& item) {
    return list.empty() ? item : Message("%1, %2", list, item);
}

std::string Filled(const char* english, std::span<const std::string> arguments) {
    return WithArguments(gettext(english), arguments);
}

std::string FilledCount(const char* one, const char* many, unsigned long count,
                        std::span<const std::string> arguments) {
    return WithArguments(ngettext(one, many, count), arguments);
}
