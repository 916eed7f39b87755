#pragma once

#include "Strings/UString.h"
#include "UI/OSMenuHandle.h"

#include <memory>

namespace Kestrin {

class FileSpecification;

/// The base of a desktop application: its name, its menu bar, its event loop and its end. One
/// exists per process, on the main thread; it is made before the first window and deleted after the
/// last.
class Application {
public:
    /// What the platform hands to a starting program; passed through.
    struct PlatformParameters {};

    /// Connects to the window system and becomes the current application. SIGTERM, SIGINT, SIGHUP
    /// and the end of the session call Quit as long as it is that.
    Application(const PlatformParameters& parameters, const UString& name);
    Application(const Application&) = delete;
    Application& operator=(const Application&) = delete;

    virtual ~Application();

    /// A copy of the name given at construction.
    virtual UString GetName() const;

    /// The picture that stands for the program, an SVG or PNG file; read when the loop runs.
    void SetIcon(const FileSpecification& picture);

    // The event loop

    /// Returns when the application has been asked to quit; at once when that was before.
    virtual void Run();

    /// Ends Run, from wherever it is called; an open alert or pop-up closes without a choice.
    virtual void Quit();

    /// The event loop has started.
    virtual void FinishedLaunching();

    virtual bool IsCarbon();

    // The menu bar

    /// Takes out the menus of earlier calls and puts in those that the subclass supplies now.
    virtual void RebuildMenuBar();
    virtual unsigned int GetNumMenuBarMenus();
    virtual OSMenuHandle GetNthMenuBarMenu(unsigned int n);

    virtual void ActivationChanged(bool active);

    /// Runs the event loop for that time, or until Quit.
    virtual void RunApplicationLoop(unsigned int milliseconds);

    /// Files or addresses are to be opened, or the program was started without any.
    virtual void OpenApplication();

    virtual void DockClicked();

    /// The one application; null before its construction and after its destruction.
    static Application* Current();

private:
    struct AppData;
    std::unique_ptr<AppData> fData;
};

} // namespace Kestrin
