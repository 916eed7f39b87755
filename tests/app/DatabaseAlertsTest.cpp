#include "app/DatabaseAlerts.h"

#include "app/CBasicApp.h"
#include "tests/support/Desktop.h"
#include "tests/support/TemporaryFolder.h"

#include <CoreMIDI/MIDIDatabase.h>

#include <gmock/gmock.h>

#include <cstdlib>
#include <fstream>

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

/// Closes an alert with the key, after the look at it.
auto Closing(const char* key, std::function<void(const Desktop::Alert&)> look) {
    return [=](const Desktop::Alert& alert) {
        look(alert);
        Desktop::Type(key);
    };
}

TEST(DatabaseAlerts, TellWhyTheDatabaseIsRefusedBeforeTheQuestion) {
    const TemporaryFolder folder;
    const std::filesystem::path path = folder / "J\u00FCrgens St\u00FCcke.sqlite3";
    std::ofstream(path) << std::string(8192, 'x');
    setenv("KESTRIN_MIDI_DATABASE", path.c_str(), 1);
    MIDIRestart();

    Desktop::Script script;
    script.WhenAlertIsOpen(Closing("Return", [&](const Desktop::Alert& alert) {
        EXPECT_EQ(alert.headline, "Can't use the database of MIDI devices");
        EXPECT_THAT(alert.text, HasSubstr(path.string()));
        EXPECT_THAT(alert.text, EndsWith("what can be read of it."));
    }));
    // The first alert stays for a while after the key: only the question has two buttons.
    const auto question = [] {
        const auto alert = Desktop::OpenAlert();
        return alert && alert->buttons.size() == 2;
    };
    script.When(question, [] {
        EXPECT_THAT(Desktop::OpenAlert()->text,
                    StartsWith("No compatible surfaces are installed."));
        Desktop::Type("Escape");
    });
    const CBasicApp app(Kestrin::Application::PlatformParameters{});
    script.Play();

    // What is refused only when Ok stores has the same reason.
    script.WhenAlertIsOpen(Closing("Return", [&](const Desktop::Alert& alert) {
        EXPECT_THAT(alert.text, HasSubstr(path.string() + " is damaged.\n\nIn a terminal"));
    }));
    TellThatNothingWasStored(kMIDIServerStartErr);

    unsetenv("KESTRIN_MIDI_DATABASE");
    MIDIRestart();
}

} // namespace
