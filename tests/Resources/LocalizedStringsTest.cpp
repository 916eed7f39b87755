#include "Resources/LocalizedStrings.h"

#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>

namespace {

namespace fs = std::filesystem;
using Kestrin::LookupString;

TEST(LocalizedStrings, AnswersFromTheTableOrWithTheKey) {
    const auto lookup = [](const char* key) { return LookupString(key).utf8_str(); };
    EXPECT_EQ(lookup("Greeting"), "Hello");
    EXPECT_EQ(lookup("greeting"), "greeting");
    EXPECT_EQ(lookup("Twice"), "last");
    EXPECT_EQ(lookup("Between"), " ");
    for (const char* key : {"Foreign", "Elsewhere", "Number", "", "\xe9"})
        EXPECT_EQ(LookupString(key), UString(key, UString::kASCII)) << key;
}

/// A program of its own in a folder of its own: the table is read once per run.
class LookupInProgram : public testing::Test {
protected:
    LookupInProgram() { fs::copy_file(LOOKUP_PROBE, fFolder / "bin/probe"); }

    void AddTable(const std::string& place, const std::string& content) const {
        const fs::path path = fFolder / place / "LocalizableStrings.xml";
        fs::create_directories(path.parent_path());
        std::ofstream(path) << content;
    }

    void AddGreeting(const std::string& place, const std::string& text) const {
        AddTable(place, "<r><XSET name=''><TEXT name='Greeting'>" + text + "</TEXT></XSET></r>");
    }

    /// What the program prints, in an environment that has just these variables.
    std::string Run(const std::string& variables, const std::string& keys = "Greeting") const {
        const std::string command =
            "env -i " + variables + " " + (fFolder / "bin/probe").string() + " " + keys;
        const std::unique_ptr<std::FILE, int (*)(std::FILE*)> pipe(popen(command.c_str(), "r"),
                                                                   pclose);
        std::array<char, 1000> output{};
        const std::size_t length = fread(output.data(), 1, output.size(), pipe.get());
        return {output.data(), length};
    }

    TemporaryFolder fFolder;
    const bool fMade = fs::create_directory(fFolder / "bin");
};

TEST_F(LookupInProgram, AnswersWithTheKeyWithoutATable) {
    EXPECT_EQ(Run("LANG=fr", "Greeting ''"), "Greeting\n\n");
}

TEST_F(LookupInProgram, FailsAtEveryCallWithABrokenTable) {
    AddTable("bin/Resources", "<r><XSET name=''><TEXT");
    const std::string line = "FailString Kestrin at file:Source/XML/XMLParser line:416\n-50\n";
    EXPECT_EQ(Run("", "a b"), line + line);
}

TEST_F(LookupInProgram, PrefersTheCopyInTheUsersLanguage) {
    AddGreeting("bin/Resources", "Hello");
    AddGreeting("bin/Resources/fr.lproj", "Bonjour");
    AddGreeting("bin/Resources/fr_CA.lproj", "Allo");
    AddGreeting("bin/Resources/de.lproj", "Hallo");
    AddGreeting("bin/Resources/en_GB.lproj", "Good day");
    AddGreeting("bin/fr.lproj", "outside");
    const std::pair<const char*, const char*> expected[] = {
        {"", "Hello"},
        {"LANG=fr_CH.UTF-8", "Bonjour"},
        {"LANG=fr_CA.UTF-8@euro", "Allo"},
        {"LANG=fr LC_MESSAGES=de_AT", "Hallo"},
        {"LANG=fr LC_MESSAGES=de LC_ALL=C.UTF-8", "Hello"},
        {"LANG=fr LC_MESSAGES= LC_ALL=", "Bonjour"},
        {"LANG=fr LANGUAGE=", "Bonjour"},
        {"LANG=fr LANGUAGE=es:de:fr", "Hallo"},
        {"LANG=C LANGUAGE=fr", "Bonjour"},
        {"LANGUAGE=es:en:fr", "Hello"},
        {"LANGUAGE=en_US:fr", "Hello"},
        {"LANGUAGE=en_GB:fr", "Good day"},
        {"LANGUAGE=POSIX:fr", "Hello"},
        {"LANGUAGE=../fr:../../bin/fr:/fr:..:.:de", "Hallo"},
        {"LANG=es", "Hello"},
    };
    for (const auto& [variables, text] : expected)
        EXPECT_EQ(Run(variables), std::string(text) + "\n") << variables;
}

TEST_F(LookupInProgram, FindsTheResourcesOfAnInstalledProgram) {
    AddGreeting("share/sorvex-mackie-setup", "Hello");
    AddGreeting("share/sorvex-mackie-setup/fr.lproj", "Bonjour");
    EXPECT_EQ(Run(""), "Hello\n");
    EXPECT_EQ(Run("LANG=fr"), "Bonjour\n");
    // What stands beside the program comes first, in each language.
    AddGreeting("bin/Resources", "Hi");
    EXPECT_EQ(Run(""), "Hi\n");
    EXPECT_EQ(Run("LANG=fr"), "Bonjour\n");
}

} // namespace
