#include "Resources/LocalizedStrings.h"
#include "Resources/ResourceAccess.h"
#include "Surfaces/SurfaceGroups.h"
#include "UI/DrawingContext.h"
#include "UI/Internal/TextHandOver.h"
#include "UI/TextLayout.h"
#include "XML/XMLSerializable.h"

#include "Platform/UI/NativeAlert.h"
#include "app/CBasicApp.h"
#include "app/DatabaseAlerts.h"
#include "app/Look.h"
#include "app/NumericEditBox.h"
#include "tests/support/NativeInput.h"
#include "tests/support/TestStudio.h"

#include <CoreMIDI/MIDIDatabase.h>

#include <gmock/gmock.h>

#include <cstdlib>
#include <set>

using Kestrin::LookupString;

namespace {

/// The text without the blanks at its end.
std::string Visible(std::string text) {
    return text.erase(text.find_last_not_of(' ') + 1);
}

void ExpectWhole(const UString& text, const std::string& handedOver) {
    const std::string visible = Visible(text.utf8_str());
    const std::size_t blanks = visible.size() - UString(visible, UString::kUTF8).length();
    EXPECT_EQ(handedOver, visible) << "It needs " << blanks << " blanks at its end.";
}

void ExpectInside(const UString& text, const Kestrin::Rect& place) {
    constexpr float kAir = 4; // so that it does not touch what stands around it
    const auto layout = Kestrin::TextLayout::Create();
    layout->SetFont(Kestrin::kControlFont, Kestrin::kFontSize);
    layout->SetText(text);
    EXPECT_LE(layout->Width() + kAir, place.width) << text.utf8_str();
    EXPECT_LE(layout->Height(), place.height) << text.utf8_str();
    EXPECT_EQ(text.utf8_str(), Visible(text.utf8_str()));
}

std::set<std::string> drawn;
int alerts = 0;

} // namespace

// The linker puts these in the place of the framework's own; CMakeLists.txt names them.
namespace Kestrin {

std::string RealHandOver(const UString&) asm("__real__ZN7Kestrin8HandOverB5cxx11ERK7UString");
std::string CheckedHandOver(const UString&) asm("__wrap__ZN7Kestrin8HandOverB5cxx11ERK7UString");
std::string CheckedHandOver(const UString& text) {
    ExpectWhole(text, RealHandOver(text));
    return RealHandOver(text);
}

void CheckedDrawString(DrawingContext&, const UString&, Rect, TextAlignment) asm(
    "__wrap__ZN7Kestrin14DrawingContext10DrawStringERK7UStringNS_4RectENS_13TextAlignmentE");
void CheckedDrawString(DrawingContext&, const UString& text, Rect place, TextAlignment) {
    ExpectInside(text, place);
    drawn.insert(text.utf8_str());
}

int AnsweredAlert(NativeAlert&) asm("__wrap__ZN7Kestrin11NativeAlert8RunModalEv");
int AnsweredAlert(NativeAlert&) {
    ++alerts;
    return 1;
}

} // namespace Kestrin

namespace {

std::vector<std::string> AllLanguages() {
    std::vector<std::string> languages{"en"};
    for (const auto& entry : std::filesystem::directory_iterator(RESOURCES))
        if (entry.path().extension() == ".lproj")
            languages.push_back(entry.path().stem());
    return languages;
}

class Languages : public testing::TestWithParam<std::string> {
protected:
    /// A program reads one table: each case needs a process of its own, as ctest gives it.
    void SetUp() override {
        setenv("LANGUAGE", GetParam().c_str(), 1);
        const std::string folder = GetParam() == "en" ? "/Resources/" : GetParam() + ".lproj/";
        const auto table =
            Kestrin::ResourceAccess::Instance().GetFile("LocalizableStrings"_u, "xml"_u);
        ASSERT_THAT(table.GetPOSIXPath(), testing::EndsWith(folder + "LocalizableStrings.xml"));
        ASSERT_EQ(LookupString("Help"),
                  Kestrin::ReadSerializedFile(table)->GetUStringItem("Help"_u)->GetValue());
    }

    static std::string Text(const char* key) { return LookupString(key).utf8_str(); }
};

TEST_P(Languages, FitTheWindowWithNamesOfAnyScript) {
    const char* const name = "\u05E7\u05D5\u05E0\u05E1\u05D5\u05DC\u05D4 \u63A7\u5236 1";
    TestStudio studio;
    const MIDIDeviceRef interface = studio.AddInterface("Desk Interface", 1);
    TestStudio::Cable(interface, 1, studio.AddExternal(name, "Mackie", "Mackie Control"));
    const CBasicApp app(Kestrin::Application::PlatformParameters{});
    EXPECT_TRUE(NativeInput::WaitUntil([] { return drawn.size() >= 7; }));
    EXPECT_THAT(drawn, testing::IsSupersetOf({Text("Edit settings for"), Text("Group"),
                                              Text("Group position"), Text("Help"), Text("Cancel"),
                                              Text("Ok")}));
    EXPECT_THAT(drawn, testing::Contains(testing::HasSubstr(name)));
    EXPECT_EQ(alerts, 0);
}

TEST_P(Languages, LoseNoVisibleCharacterInAlerts) {
    {
        const TestStudio studio;
        const CBasicApp app(Kestrin::Application::PlatformParameters{});
        EXPECT_EQ(std::exchange(alerts, 0), 1) << "the question about missing surfaces";
        Kestrin::View parent;
        NumericEditBox box;
        box.Init(&parent, {0, 0}, 80, 1, 127, "Group"_u);
        box.ActiveStateChanged(nullptr, false);
        EXPECT_EQ(std::exchange(alerts, 0), 1) << "the number is out of range";
        for (OSStatus status = kKestrinMIDIErrDamaged; status <= kKestrinMIDIErrLocked; ++status)
            TellThatNothingWasStored(status);
        EXPECT_EQ(std::exchange(alerts, 0), 5);
    }
    setenv("KESTRIN_MIDI_DATABASE", "/proc/J\u00FCrgen/\u5367.sqlite3", 1);
    MIDIRestart();
    TellWhyDatabaseIsRefused();
    EXPECT_EQ(alerts, 1);
}

INSTANTIATE_TEST_SUITE_P(Table, Languages, testing::ValuesIn(AllLanguages()),
                         [](const auto& table) { return table.param; });

} // namespace
