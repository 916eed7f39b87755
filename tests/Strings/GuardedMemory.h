#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstring>
#include <new>

/// Memory whose last byte is the last of a readable page, so that reading past it ends the process.
class GuardedMemory {
public:
    explicit GuardedMemory(std::size_t capacity)
        : fPage(static_cast<std::size_t>(sysconf(_SC_PAGESIZE)))
        , fReadable((capacity / fPage + 1) * fPage) {
        void* const memory = mmap(nullptr, fReadable + fPage, PROT_READ | PROT_WRITE,
                                  MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (memory == MAP_FAILED)
            throw std::bad_alloc();
        fMemory = static_cast<unsigned char*>(memory);
        mprotect(fMemory + fReadable, fPage, PROT_NONE);
    }
    ~GuardedMemory() { munmap(fMemory, fReadable + fPage); }
    GuardedMemory(const GuardedMemory&) = delete;
    GuardedMemory& operator=(const GuardedMemory&) = delete;

    /// A copy of the elements that ends where the readable memory does; odd ones at odd addresses
    /// with `shift`, which then is the number of bytes left free behind them.
    template <typename Unit>
    const Unit* CopyBeforeTheEnd(const Unit* elements, std::size_t count, std::size_t shift = 0) {
        unsigned char* const place = fMemory + fReadable - shift - count * sizeof(Unit);
        if (count > 0)
            std::memcpy(place, elements, count * sizeof(Unit));
        return reinterpret_cast<const Unit*>(place);
    }

private:
    std::size_t fPage;
    std::size_t fReadable;
    unsigned char* fMemory;
};
