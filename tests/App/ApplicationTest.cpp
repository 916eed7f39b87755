#include "App/Application.h"

#include "UI/MenuList.h"

#include "Platform/UI/NativeAlert.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>

#include <chrono>
#include <functional>
#include <stdexcept>
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
        : Application({}, UString("Sorvex Test", UString::kASCII)) {}

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
    unsigned int GetNumMenuBarMenus() override { return static_cast<unsigned int>(menus.size()); }
    OSMenuHandle GetNthMenuBarMenu(unsigned int n) override { return menus[n]; }

    std::vector<std::string> events;
    std::function<void()> whenLaunched;
    std::vector<OSMenuHandle> menus;
};

/// A question whose second button is the way out.
int Ask() {
    NativeAlert alert;
    alert.SetMessageText("Really?");
    alert.AddButton("Yes");
    alert.AddButton("No");
    return alert.RunModal();
}

using Handler = void (*)(int);

Handler HandlerOf(int signal) {
    struct sigaction action;
    sigaction(signal, nullptr, &action);
    return action.sa_handler;
}

TEST(Application, IsTheCurrentOneAsLongAsItLives) {
    {
        TestApplication application;
        EXPECT_EQ(Application::Current(), &application);
        EXPECT_TRUE(application.GetName() == UString("Sorvex Test", UString::kASCII));
        EXPECT_FALSE(application.IsCarbon());
        EXPECT_TRUE(application.Application::GetNthMenuBarMenu(0).IsEmpty());
    }
    EXPECT_EQ(Application::Current(), nullptr);
}

TEST(Application, RunReturnsAtOnceAfterQuitAndAsksNothingMore) {
    TestApplication application;
    application.Quit();
    application.Run();
    application.RunApplicationLoop(60'000);
    EXPECT_EQ(Ask(), 1);
    EXPECT_THAT(application.events, ElementsAre("quit"));
}

TEST(Application, TellsOfItsStartOnceAndRunsUntilQuit) {
    TestApplication application;
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

TEST(Application, ASignalInAnAlertBeforeRunIsRemembered) {
    TestApplication application;
    raise(SIGTERM);
    EXPECT_EQ(Ask(), 1);
    application.Run();
    EXPECT_THAT(application.events, ElementsAre("quit"));
}

TEST(Application, LeavesSignalsAsItFoundThem) {
    const Handler before = HandlerOf(SIGTERM);
    signal(SIGHUP, SIG_IGN);
    {
        TestApplication application;
        EXPECT_NE(HandlerOf(SIGTERM), before);
        EXPECT_EQ(HandlerOf(SIGHUP), SIG_IGN) << "nohup";
        raise(SIGTERM);
        application.RunApplicationLoop(60'000);
        EXPECT_EQ(HandlerOf(SIGTERM), SIG_DFL) << "the second one ends a process that hangs";
    }
    EXPECT_EQ(HandlerOf(SIGTERM), before);
    EXPECT_EQ(HandlerOf(SIGHUP), SIG_IGN);
    signal(SIGHUP, SIG_DFL);
}

TEST(Application, RunsTheLoopForATime) {
    TestApplication application;
    const auto start = std::chrono::steady_clock::now();
    application.RunApplicationLoop(0);
    application.RunApplicationLoop(30);
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(30));
    EXPECT_TRUE(application.events.empty());
}

TEST(Application, AnExceptionOfAHandlerComesOutOfRun) {
    TestApplication application;
    application.whenLaunched = [] { throw std::runtime_error("handler"); };
    EXPECT_THROW(application.Run(), std::runtime_error);

    TestApplication* another = &application;
    another->whenLaunched = nullptr;
    EXPECT_NO_THROW(another->RunApplicationLoop(0));
}

TEST(Application, RebuildsTheMenuBarFromItsMenus) {
    const auto listed = [] {
        std::vector<short> ids;
        for (const OSMenuHandle& menu : MenuList::Instance().Menus())
            ids.push_back(menu.GetMenuID());
        return ids;
    };
    {
        TestApplication application;
        for (const short id : {1, 2})
            application.menus.push_back(OSMenuHandle::CreateNewStandaloneMenu(id));
        application.RebuildMenuBar();
        application.RebuildMenuBar();
        EXPECT_THAT(listed(), ElementsAre(1, 2));
        application.menus = {OSMenuHandle::CreateNewStandaloneMenu(3), OSMenuHandle()};
        application.RebuildMenuBar();
        EXPECT_THAT(listed(), ElementsAre(3));
    }
    EXPECT_TRUE(listed().empty());
}

} // namespace
