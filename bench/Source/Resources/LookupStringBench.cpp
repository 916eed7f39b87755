#include "Resources/LocalizedStrings.h"

#include <benchmark/benchmark.h>
#include <libintl.h>

#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <vector>

// Looking up one of a thousand texts by its English one, beside gettext with a compiled catalogue
// of the same texts.

namespace {

namespace fs = std::filesystem;

constexpr int kEntries = 1000;
constexpr const char* kDomain = "lookup-bench";

std::string Key(int number) {
    static const char* starts[] = {"Value must be between ", "No compatible surfaces are ",
                                   "Group position ", "Can't configure control ", "Ok "};
    return starts[number % std::size(starts)] + std::to_string(number * 7919 % 100003);
}

/// Keys in an order that no table has them in.
const std::vector<std::string>& Keys() {
    static const std::vector<std::string> keys = [] {
        std::vector<std::string> made;
        for (int i = 0; i < kEntries; ++i)
            made.push_back(Key(i * 611 % kEntries));
        return made;
    }();
    return keys;
}

const std::vector<std::string>& MissingKeys() {
    static const std::vector<std::string> keys = [] {
        std::vector<std::string> made;
        for (const std::string& key : Keys())
            made.push_back(key + "?");
        return made;
    }();
    return keys;
}

/// Puts the table where this program looks for it: beside itself.
void PrepareLookupString() {
    const fs::path folder = fs::read_symlink("/proc/self/exe").parent_path() / "Resources";
    fs::create_directories(folder);
    std::ofstream table(folder / "LocalizableStrings.xml");
    table << "<resource_list><XSET name=\"strings\">\n";
    for (int i = 0; i < kEntries; ++i)
        table << "<TEXT name=\"" << Key(i) << "\" value=\"Texte " << Key(i) << "\"/>\n";
    table << "</XSET></resource_list>\n";
}

/// Compiles the catalogue and makes it that of the process.
void PrepareGettext() {
    const fs::path folder = fs::temp_directory_path() / "lookup-bench-locale";
    const fs::path catalogue = folder / "fr/LC_MESSAGES";
    fs::create_directories(catalogue);
    std::ofstream source(folder / "fr.po");
    source << "msgid \"\"\nmsgstr \"Content-Type: text/plain; charset=UTF-8\\n\"\n\n";
    for (int i = 0; i < kEntries; ++i)
        source << "msgid \"" << Key(i) << "\"\nmsgstr \"Texte " << Key(i) << "\"\n\n";
    source.close();
    const std::string command = std::string(MSGFMT) + " -o " +
                                (catalogue / (std::string(kDomain) + ".mo")).string() + " " +
                                (folder / "fr.po").string();
    if (std::system(command.c_str()) != 0)
        std::abort();
    std::setlocale(LC_ALL, "C.UTF-8");
    setenv("LANGUAGE", "fr", 1);
    bindtextdomain(kDomain, folder.c_str());
}

std::string TextOf(const UString& text) {
    return text.utf8_str();
}

std::string TextOf(const char* text) {
    return text;
}

template <auto kLookup>
void LookUp(benchmark::State& state, const std::vector<std::string>& keys, const char* prefix) {
    // What does not answer as it should is not worth its time.
    if (TextOf(kLookup(keys[1].c_str())) != prefix + keys[1])
        std::abort();
    std::size_t next = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(kLookup(keys[next].c_str()));
        next = next + 1 == keys.size() ? 0 : next + 1;
    }
}

UString Ours(const char* key) {
    return Kestrin::LookupString(key);
}

const char* Gettext(const char* key) {
    return dgettext(kDomain, key);
}

template <auto kLookup>
void Register(const std::string& contender) {
    benchmark::RegisterBenchmark(("LookupString/Hit/" + contender).c_str(), LookUp<kLookup>,
                                 std::cref(Keys()), "Texte ");
    benchmark::RegisterBenchmark(("LookupString/Miss/" + contender).c_str(), LookUp<kLookup>,
                                 std::cref(MissingKeys()), "");
}

const bool kRegistered = [] {
    PrepareLookupString();
    PrepareGettext();
    Register<Ours>("ours");
    Register<Gettext>("dgettext");
    return true;
}();

} // namespace
