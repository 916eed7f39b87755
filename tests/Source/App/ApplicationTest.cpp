#include "App/Application.h"

#include "Platform/UI/NativeAlert.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>

#include <functional>
#include <string>
#include <vector>

using namespace Kestrin;
using testing::ElementsAre;

namespace {

/// An application that writes down what it is told and does what the test wants when it has
/// started.
class TestApplication : public Application {
public:
    TestApplication()
        : Application({}, "Sorvex Test"_u) {}

    void FinishedLaunching() override {
        events.push_back("launched");
        if (whenLaunched)
            whenLaunched();
    }
    void OpenApplication() override { events.push_back("open"); }
    void Quit() override {
        events.push_back("quit");
        Application::Quit();
    }

    std::vector<std::string> events;
    std::function<void()> whenLaunched;
};

/// A question whose second button is the way out.
int Ask() {
    NativeAlert alert;
    alert.AddButton("Yes");
    alert.AddButton("No");
    return alert.RunModal();
}

TEST(Application, TellsOfItsStartOnceAndRunsUntilQuit) {
    TestApplication application;
    application.RunApplicationLoop(20);
    EXPECT_TRUE(application.events.empty());
    application.whenLaunched = [&] { application.Quit(); };
    application.Run();
    application.Run();
    EXPECT_THAT(application.events, ElementsAre("open", "launched", "quit"));
}

TEST(Application, SignalsQuitTheLoopAndAnOpenAlert) {
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        TestApplication application;
        int answer = -1;
        application.whenLaunched = [&] {
            raise(signal);
            answer = Ask();
        };
        application.Run();
        EXPECT_EQ(answer, 1);
        EXPECT_EQ(application.events.back(), "quit") << signal;
    }
}

TEST(Application, RunReturnsAtOnceAfterASignalAndAsksNothingMore) {
    signal(SIGHUP, SIG_IGN);
    {
        TestApplication application;
        raise(SIGHUP); // as under nohup
        application.RunApplicationLoop(20);
        EXPECT_TRUE(application.events.empty());
        raise(SIGTERM);
        EXPECT_EQ(Ask(), 1);
        application.Run();
        application.RunApplicationLoop(60'000);
        EXPECT_THAT(application.events, ElementsAre("quit"));
        EXPECT_EQ(signal(SIGTERM, SIG_DFL), SIG_DFL) << "the second one ends a process that hangs";
    }
    EXPECT_EQ(signal(SIGHUP, SIG_DFL), SIG_IGN);
    EXPECT_EQ(signal(SIGINT, SIG_DFL), SIG_DFL);
}

TEST(ApplicationDeathTest, WithoutADisplaySaysWhatToDoAndEnds) {
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    for (const char* display : {"", ":4711"}) {
        const auto start = [display] {
            unsetenv("QT_QPA_PLATFORM");
            unsetenv("WAYLAND_DISPLAY");
            setenv("DISPLAY", display, 1);
            TestApplication();
        };
        EXPECT_EXIT(start(), testing::ExitedWithCode(1), "set DISPLAY or WAYLAND_DISPLAY");
    }
}

} // namespace
