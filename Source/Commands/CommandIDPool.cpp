#include "Commands/CommandIDPool.h"

#include <cstdio>
#include <exception>

CommandIDPool::CommandIDPool(unsigned int first, long count)
    : fFirstID(first)
    , fCount(static_cast<unsigned int>(count)) {
    const unsigned int end = fFirstID + fCount;
    if (end > first)
        fFreeIDs.reserve(fCount);
    for (unsigned int id = first; id < end; ++id)
        fFreeIDs.push_back(id);
}

unsigned int CommandIDPool::GetNextID() {
    if (fFreeIDs.empty()) {
        std::puts("CommandIDPool - cmd pool empty");
        std::fflush(stdout);
        std::terminate();
    }
    const unsigned int id = fFreeIDs.back();
    fFreeIDs.pop_back();
    return id;
}

void CommandIDPool::ReleaseID(unsigned int id) {
    if (id < fFirstID || id > fFirstID + fCount) {
        std::printf("CommandIDPool release invalid cmd %d\n", static_cast<int>(id));
        std::fflush(stdout);
        return;
    }
    fFreeIDs.push_back(id);
}
