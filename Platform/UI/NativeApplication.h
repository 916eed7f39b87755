#pragma once

#include <memory>
#include <string>
#include <vector>

namespace Kestrin {

class NativeMenu;

/// What the platform tells the program as a whole. All of it arrives on the main thread, out of the
/// event loop.
class NativeApplicationDelegate {
public:
    virtual ~NativeApplicationDelegate() = default;

    /// The event loop has started; once in the life of a delegate, behind the opening at launch.
    virtual void DidFinishLaunching() = 0;

    /// The program is to open these addresses: given at its start or sent to it later.
    virtual void OpenURLs(const std::vector<std::string>& addresses) = 0;

    /// The same for the paths of files.
    virtual void OpenFiles(const std::vector<std::string>& paths) = 0;

    /// The program was started without anything to open. Returns whether that was dealt with.
    virtual bool OpenUntitledFile() = 0;

    /// Somebody outside wants the program to end: SIGTERM, SIGINT, SIGHUP or the end of the
    /// session.
    virtual void QuitRequested() = 0;
};

/// The connection to the window system and its event loop. One per process, on the main thread.
class NativeApplication {
public:
    /// Makes the connection on first use, with the process's own arguments. Without a usable
    /// display it says so on standard error and ends the process with status 1. It lives as long as
    /// the process.
    static NativeApplication& Shared();

    NativeApplication(const NativeApplication&) = delete;
    NativeApplication& operator=(const NativeApplication&) = delete;

    /// `name` is what a person reads, `identifier` the base name of the program's desktop entry.
    void SetName(const std::string& name, const std::string& identifier);
    const std::string& Name() const;

    /// The picture in the title bars and wherever the desktop shows the program: the path of an SVG
    /// or PNG file, read when the event loop runs. A file that cannot be read leaves the desktop's
    /// own.
    void SetIconFile(const std::string& path);

    /// Makes `delegate` the receiver of the events above, null for none; it is not owned. While
    /// there is one, the signals that ask for the end are its QuitRequested (of each kind the
    /// first: another one ends the process); without one they have the meaning that they had
    /// before. A new delegate begins a new program: an earlier Terminate is forgotten.
    void SetDelegate(NativeApplicationDelegate* delegate);

    /// Runs the event loop until Terminate; returns at once when that was called before. An
    /// exception that escapes from the handling of an event ends the loop, and an alert or pop-up
    /// that is open, and goes on to the caller.
    void Run();

    /// Runs the event loop for that time, or until Terminate; 0 handles what is due now.
    void RunForTime(double seconds);

    /// Ends Run and every alert and pop-up that is open or is opened from now on, save for alerts
    /// after Run has returned: they may be the program's only word on a failure.
    void Terminate();
    bool IsTerminating() const;
    /// Whether Run has returned since Terminate.
    bool HasEnded() const;

    /// The menus of the whole program. They need no connection.
    static NativeMenu& MainMenu();

private:
    NativeApplication();
    ~NativeApplication();

    struct Data;
    std::unique_ptr<Data> fData;
};

} // namespace Kestrin
