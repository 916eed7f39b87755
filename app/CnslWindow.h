#pragma once

#include "Commands/RequestHandler.h"
#include "UI/View.h"
#include "UI/Window.h"

#include <memory>

class CBasicApp;
class CnslView;

/// The program's one window and what fills it. Closing the window ends the program.
class CnslWindow : public Kestrin::View,
                   public Kestrin::RequestHandler,
                   public Kestrin::Window::WindowEventClient {
public:
    /// `app` owns this object and is asked to quit when the window closes.
    explicit CnslWindow(CBasicApp* app);
    ~CnslWindow() override;

    /// Makes the window and its console unless they are there, then brings it to the front.
    void Open();

    /// Destroys the window and asks the application to quit.
    void Close();

    // What happens to the window
    void WindowClosedNotification(Kestrin::Window* window) override;
    void WindowActivationChanged(Kestrin::Window* window, bool active) override;
    /// The keys that no control took: Return is Ok, Escape is Cancel.
    bool DoTextInput(const UString& text, unsigned int modifiers, unsigned char key) override;
    void DoDraw(Kestrin::DrawingContext& context) override;

    // Handles no commands
    bool CanHandle(const Kestrin::CommandSpecifier& command) override;
    bool HandleCommand(const Kestrin::CommandSpecifier& command) override;

private:
    CBasicApp* fApp;
    Kestrin::Window* fWindow = nullptr;
    std::unique_ptr<CnslView> fConsole;
};
