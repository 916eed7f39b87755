#include "App/Application.h"

#include "Resources/FileSpecification.h"

#include "App/ApplicationDelegate.h"
#include "App/MenuBar.h"

#include <algorithm>
#include <utility>

namespace Kestrin {

namespace {

constexpr short kInsertBeforeMenuID = 128;

Application* gApplication = nullptr;

/// The base name of the desktop entry of a program of that name: "Some Program" has
/// some-program.desktop.
std::string IdentifierOf(std::string name) {
    std::transform(name.begin(), name.end(), name.begin(), [](char c) {
        if (c == ' ')
            return '-';
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    });
    return name;
}

} // namespace

struct Application::AppData {
    AppData(Application& owner, UString applicationName)
        : application(owner)
        , name(std::move(applicationName)) {
        const std::string text = name.utf8_str();
        NativeApplication::Shared().SetName(text, IdentifierOf(text));
    }

    Application& application;
    UString name;
    MenuBar menuBar;
    ApplicationDelegate delegate;
};

Application::Application(const PlatformParameters&, const UString& name)
    : fData(std::make_unique<AppData>(*this, name)) {
    gApplication = this;
    NativeApplication::Shared().SetDelegate(&fData->delegate);
}

Application::~Application() {
    gApplication = nullptr;
    NativeApplication::Shared().SetDelegate(nullptr);
}

Application* Application::Current() {
    return gApplication;
}

UString Application::GetName() const {
    return fData->name;
}

void Application::SetIcon(const FileSpecification& picture) {
    NativeApplication::Shared().SetIconFile(picture.GetPOSIXPath());
}

void Application::Run() {
    NativeApplication::Shared().Run();
}

void Application::Quit() {
    NativeApplication::Shared().Terminate();
}

void Application::FinishedLaunching() {}

bool Application::IsCarbon() {
    return false;
}

void Application::RebuildMenuBar() {
    fData->menuBar.RemoveAllFromMenuList();
    const unsigned int count = GetNumMenuBarMenus();
    for (unsigned int i = 0; i < count; ++i)
        fData->menuBar.Insert(GetNthMenuBarMenu(i), kInsertBeforeMenuID);
}

unsigned int Application::GetNumMenuBarMenus() {
    return 0;
}

OSMenuHandle Application::GetNthMenuBarMenu(unsigned int) {
    return OSMenuHandle();
}

void Application::ActivationChanged(bool) {}

void Application::RunApplicationLoop(unsigned int milliseconds) {
    NativeApplication::Shared().RunForTime(milliseconds * 0.001);
}

void Application::OpenApplication() {}

void Application::DockClicked() {}

} // namespace Kestrin
