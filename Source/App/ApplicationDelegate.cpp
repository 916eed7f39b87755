#include "App/ApplicationDelegate.h"

#include "App/Application.h"

namespace Kestrin {

namespace {

void TellToOpen() {
    if (Application* application = Application::Current())
        application->OpenApplication();
}

} // namespace

void ApplicationDelegate::DidFinishLaunching() {
    if (Application* application = Application::Current())
        application->FinishedLaunching();
}

void ApplicationDelegate::OpenURLs(const std::vector<std::string>&) {
    TellToOpen();
}

void ApplicationDelegate::OpenFiles(const std::vector<std::string>&) {
    TellToOpen();
}

bool ApplicationDelegate::OpenUntitledFile() {
    TellToOpen();
    return Application::Current() != nullptr;
}

void ApplicationDelegate::QuitRequested() {
    if (Application* application = Application::Current())
        application->Quit();
}

} // namespace Kestrin
