#pragma once

#include <chrono>
#include <filesystem>
#include <utility>

namespace KestrinMIDI {

/// A descriptor of the system, closed at the end.
class Descriptor {
public:
    explicit Descriptor(int number)
        : fNumber(number) {}
    ~Descriptor();
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int Number() const { return fNumber; }

private:
    int fNumber;
};

/// Tells by one descriptor when it is worth looking at the service again: another process or this
/// one wrote to the database, the file was replaced, something was plugged or unplugged. It may be
/// wrong, but never keeps silent about a change; while nothing happens it stays silent.
class ChangeWatch {
public:
    ChangeWatch();

    /// Readable when it is worth looking.
    int Number() const { return fAll.Number(); }
    /// Makes it readable. From any thread.
    void Ring() const;

    /// Makes the descriptor unreadable and watches the database at `path`. A change from now on
    /// makes it readable again; so look after this call, and then call LookedWith.
    void Rearm(const std::filesystem::path& path);

    /// What a look met.
    struct Look {
        bool isUsable; ///< whether the database is
        bool isAgain;  ///< whether something could not be written or seen and is to be tried again
        int sequencer; ///< the descriptor by which it tells of news; -1 while there is none
    };
    void LookedWith(const Look& look);

private:
    void TakeEvents();
    void WatchFolder(const std::filesystem::path& path);
    void LookAgainAfter(std::chrono::milliseconds pause);

    Descriptor fAll;
    Descriptor fFolders;
    Descriptor fTimer;
    Descriptor fBell;
    bool fIsWatching = false;
    std::chrono::milliseconds fPause{}; ///< until the next look after an event; 0: none is due
};

} // namespace KestrinMIDI
