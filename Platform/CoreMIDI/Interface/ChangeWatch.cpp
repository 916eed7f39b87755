#include "Platform/CoreMIDI/Interface/ChangeWatch.h"

#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <sys/inotify.h>
#include <sys/timerfd.h>
#include <unistd.h>

#include <array>
#include <cstdint>

namespace KestrinMIDI {

namespace {

using std::chrono::milliseconds;

// A commit is seen only some time after what it wrote is told: the disk stands between. A file that
// is being replaced, or a unit that comes up, takes its time too. So one looks again, less and less
// often.
constexpr milliseconds kFirstPause{5};
constexpr milliseconds kLastPause{1280};
// What can't be watched, used or written is looked at as often as this.
constexpr milliseconds kBlindPause{1000};

constexpr std::uint32_t kChangesInFolder =
    IN_MODIFY | IN_CREATE | IN_DELETE | IN_MOVE | IN_DELETE_SELF | IN_MOVE_SELF;

void Listen(const Descriptor& all, int number) {
    epoll_event event{};
    event.events = EPOLLIN;
    event.data.fd = number;
    epoll_ctl(all.Number(), EPOLL_CTL_ADD, number, &event); // does nothing where it listens already
}

void Empty(int descriptor) {
    alignas(inotify_event) std::array<char, 4096> bytes;
    while (read(descriptor, bytes.data(), bytes.size()) > 0) {
    }
}

} // namespace

Descriptor::~Descriptor() {
    if (fNumber >= 0)
        close(fNumber);
}

ChangeWatch::ChangeWatch()
    : fAll(epoll_create1(EPOLL_CLOEXEC))
    , fFolders(inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
    , fTimer(timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC))
    , fBell(eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)) {
    for (const Descriptor* const source : {&fFolders, &fTimer, &fBell})
        Listen(fAll, source->Number());
    Ring();
}

void ChangeWatch::Ring() const {
    eventfd_write(fBell.Number(), 1);
}

void ChangeWatch::Rearm(const std::filesystem::path& path) {
    TakeEvents();
    WatchFolder(path);
}

/// What the sequencer has to tell is left for the service to take.
void ChangeWatch::TakeEvents() {
    std::array<epoll_event, 8> events{};
    const int count = epoll_wait(fAll.Number(), events.data(), static_cast<int>(events.size()), 0);
    bool hasNews = false;
    for (int i = 0; i < count; ++i) {
        const int source = events[static_cast<std::size_t>(i)].data.fd;
        hasNews = hasNews || source != fTimer.Number();
        if (source == fTimer.Number() || source == fBell.Number() || source == fFolders.Number())
            Empty(source);
    }
    if (hasNews)
        fPause = kFirstPause;
    else if (count > 0)
        fPause = fPause < kLastPause ? fPause * 2 : milliseconds(0);
    if (count > 0)
        LookAgainAfter(fPause);
}

/// A folder that is watched already stays so; one that was made anew is watched anew.
void ChangeWatch::WatchFolder(const std::filesystem::path& path) {
    std::error_code error;
    const auto folder = std::filesystem::weakly_canonical(path, error).parent_path();
    fIsWatching = inotify_add_watch(fFolders.Number(), folder.c_str(), kChangesInFolder) >= 0;
}

void ChangeWatch::LookedWith(const Look& look) {
    if (look.sequencer >= 0 && look.isUsable)
        Listen(fAll, look.sequencer);
    else if (look.sequencer >= 0) // nobody takes what it tells: that would be news without an end
        epoll_ctl(fAll.Number(), EPOLL_CTL_DEL, look.sequencer, nullptr);
    else if (inotify_add_watch(fFolders.Number(), "/dev/snd", IN_CREATE | IN_ATTRIB) < 0)
        inotify_add_watch(fFolders.Number(), "/dev", IN_CREATE);
    if ((!fIsWatching || !look.isUsable || look.isAgain) && fPause == milliseconds(0))
        LookAgainAfter(kBlindPause);
}

/// Never, where the pause is 0.
void ChangeWatch::LookAgainAfter(milliseconds pause) {
    itimerspec time{};
    time.it_value.tv_sec = pause.count() / 1000;
    time.it_value.tv_nsec = pause.count() % 1000 * 1'000'000;
    timerfd_settime(fTimer.Number(), 0, &time, nullptr);
}

} // namespace KestrinMIDI
