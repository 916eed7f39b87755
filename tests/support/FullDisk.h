#pragma once

#include <sys/resource.h>

#include <csignal>

/// Lets no file grow past so many bytes, as on a full disk, to the end of its life.
class FullDisk {
public:
    explicit FullDisk(rlim_t bytes) {
        getrlimit(RLIMIT_FSIZE, &fBefore);
        const rlimit full{bytes, fBefore.rlim_max};
        setrlimit(RLIMIT_FSIZE, &full);
    }
    ~FullDisk() {
        setrlimit(RLIMIT_FSIZE, &fBefore);
        std::signal(SIGXFSZ, fHandler);
    }

private:
    void (*fHandler)(int) = std::signal(SIGXFSZ, SIG_IGN);
    rlimit fBefore{};
};
