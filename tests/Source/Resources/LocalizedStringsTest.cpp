#include "Resources/LocalizedStrings.h"

#include "tests/Source/Strings/Text.h"
#include "tests/support/TemporaryFolder.h"

#include <fstream>

namespace {

namespace fs = std::filesystem;
using Kestrin::LookupString;

TEST(LocalizedStrings, AnswersFromTheTableOrWithTheKey) {
    EXPECT_EQ(LookupString("Greeting"), "Hello"_u);
    EXPECT_EQ(LookupString("Twice"), "last"_u);
    EXPECT_EQ(LookupString("Between"), " "_u);
    for (const char* key : {"greeting", "Foreign", "Elsewhere", "Number", "", "\xe9"})
        EXPECT_EQ(LookupString(key), UString(key, UString::kASCII)) << key;
}

/// A program of its own in a folder of its own: the table is read once per run.
class LookupInProgram : public testing::Test {
protected:
    LookupInProgram() { fs::copy_file(LOOKUP_PROBE, fFolder / "bin/probe"); }

    void AddTable(const std::string& folder, const std::string& greeting) const {
        fs::create_directories(fFolder / folder);
        std::ofstream(fFolder / folder / "LocalizableStrings.xml")
            << "<r><XSET name=''><TEXT name='Greeting'>" << greeting
            << "</TEXT><TEXT name='Greeting' lang='dede'>Hallo</TEXT></XSET></r>";
    }

    /// What the program prints, in an environment that has just these variables.
    std::string Run(const std::string& variables, const std::string& keys = "Greeting") const {
        const std::string command = "env -i " + variables + " " + (fFolder / "bin/probe").string() +
                                    " " + keys + " >" + (fFolder / "output").string();
        EXPECT_EQ(std::system(command.c_str()), 0);
        std::ifstream output(fFolder / "output");
        return {std::istreambuf_iterator<char>(output), {}};
    }

    TemporaryFolder fFolder;
    const bool fMade = fs::create_directory(fFolder / "bin");
};

TEST_F(LookupInProgram, AnswersWithTheKeyWithoutATableAndFailsAtEveryCallWithABrokenOne) {
    EXPECT_EQ(Run("LANG=fr", "Greeting ''"), "Greeting\n\n");
    AddTable("bin/Resources", "<");
    const std::string line = "FailString Kestrin at file:Source/XML/XMLParser line:416\n-50\n";
    EXPECT_EQ(Run("", "a b"), line + line);
}

TEST_F(LookupInProgram, PrefersTheCopyInTheUsersLanguage) {
    for (const char* folder : {"", "/fr.lproj", "/fr_CA.lproj", "/de.lproj", "/en_GB.lproj"})
        AddTable(std::string("bin/Resources") + folder, folder);
    AddTable("bin/fr.lproj", "outside");
    const std::pair<const char*, const char*> expected[] = {
        {"", ""},
        {"LANG=fr_CH.UTF-8", "/fr.lproj"},
        {"LANG=fr_CA.UTF-8@euro", "/fr_CA.lproj"},
        {"LANG=fr LC_MESSAGES=de_AT", "/de.lproj"},
        {"LANG=fr LC_MESSAGES=de LC_ALL=C.UTF-8", ""},
        {"LANG=fr LC_MESSAGES= LC_ALL= LANGUAGE=", "/fr.lproj"},
        {"LANG=fr LANGUAGE=es:de:fr", "/de.lproj"},
        {"LANGUAGE=es:en:fr", ""},
        {"LANGUAGE=en_GB:fr", "/en_GB.lproj"},
        {"LANGUAGE=POSIX:fr", ""},
        {"LANGUAGE=../fr:../../bin/fr:/fr:..:.:de", "/de.lproj"},
    };
    for (const auto& [variables, text] : expected)
        EXPECT_EQ(Run(variables), std::string(text) + "\n") << variables;
}

TEST_F(LookupInProgram, FindsTheResourcesOfAnInstalledProgramBehindThoseBesideIt) {
    AddTable("share/sorvex-mackie-setup", "Hello");
    AddTable("share/sorvex-mackie-setup/fr.lproj", "Bonjour");
    EXPECT_EQ(Run(""), "Hello\n");
    AddTable("bin/Resources", "Hi");
    EXPECT_EQ(Run(""), "Hi\n");
    EXPECT_EQ(Run("LANG=fr"), "Bonjour\n");
    EXPECT_EQ(Run("LANG=fr EARLY="), "Bonjour\n");
}

} // namespace
