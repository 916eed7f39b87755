#pragma once

#include "Commands/RequestHandler.h"

#include "App/Application.h"

#include <memory>

class CnslWindow;

/// The program: opens its settings window at once and quits with it. It handles no commands itself.
class CBasicApp : public Kestrin::Application, public Kestrin::RequestHandler {
public:
    /// Opens the settings window, which looks for the surfaces; Run then shows it.
    explicit CBasicApp(const Kestrin::Application::PlatformParameters& parameters);
    ~CBasicApp() override;

    void FinishedLaunching() override;
    void Quit() override;

    // Handles no commands
    bool CanHandle(const Kestrin::CommandSpecifier& command) override;
    bool HandleCommand(const Kestrin::CommandSpecifier& command) override;

private:
    std::unique_ptr<CnslWindow> fWindow;
};
