// How long it takes until another process has stored a setting on the disk and this one is told of
// it, beside writing into a plain file and the kernel's word of that.

#include "bench/Surfaces/CabledStudio.h"

#include <CoreMIDI/CoreMIDI.h>
#include <CoreMIDI/MIDIDatabase.h>

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/inotify.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>

namespace {

/// A process that does its work whenever it is asked to.
class Worker {
public:
    explicit Worker(const std::function<void(int number)>& work) {
        if (pipe(fAsk) != 0)
            return;
        MIDIRestart(); // closes the database, which a process can't have from another
        fProcess = fork();
        if (fProcess == 0)
            Serve(work);
        close(fAsk[0]);
    }
    ~Worker() {
        close(fAsk[1]);
        waitpid(fProcess, nullptr, 0);
    }
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;

    bool Ask(int number) const { return write(fAsk[1], &number, sizeof number) > 0; }

private:
    [[noreturn]] void Serve(const std::function<void(int number)>& work) const {
        close(fAsk[1]);
        for (int number = 0; read(fAsk[0], &number, sizeof number) > 0;)
            work(number);
        _exit(0);
    }

    int fAsk[2];
    pid_t fProcess = -1;
};

/// Asks the worker again and again, each time until `hear` returns.
void Measure(benchmark::State& state, const Worker& worker, const std::function<void(int)>& hear) {
    int number = 0;
    for (auto _ : state) {
        if (!worker.Ask(++number))
            state.SkipWithError("there is no other process");
        hear(number);
    }
}

void AwaitReading(int descriptor) {
    pollfd awaited{descriptor, POLLIN, 0};
    poll(&awaited, 1, -1);
}

void ToldByUs(benchmark::State& state) {
    UseCabledStudio(8);
    const MIDIDeviceRef device = MIDIGetExternalDevice(0);
    const Worker worker(
        [device](int number) { MIDIObjectSetIntegerProperty(device, CFSTR("count"), number); });
    MIDIClientRef client = 0;
    MIDIClientCreate(nullptr, nullptr, nullptr, &client);
    Measure(state, worker, [&](int number) {
        for (SInt32 value = 0; value != number;) {
            AwaitReading(KestrinMIDIClientGetDescriptor(client));
            KestrinMIDIClientDeliver(client);
            MIDIObjectGetIntegerProperty(device, CFSTR("count"), &value);
        }
    });
    MIDIClientDispose(client);
}
BENCHMARK(ToldByUs)->Name("Notification/ours")->UseRealTime();

void ToldByTheKernel(benchmark::State& state) {
    const std::filesystem::path file = UseCabledStudio(8).string() + ".plain";
    const Worker worker([file](int number) {
        const int written = open(file.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
        if (pwrite(written, &number, sizeof number, 0) > 0)
            fsync(written);
        close(written);
    });
    const int watch = inotify_init1(IN_CLOEXEC);
    inotify_add_watch(watch, file.parent_path().c_str(), IN_CLOSE_WRITE);
    Measure(state, worker, [&](int) {
        char event[sizeof(inotify_event) + NAME_MAX + 1];
        if (read(watch, event, sizeof event) < 0)
            state.SkipWithError("the kernel told nothing");
    });
    close(watch);
}
BENCHMARK(ToldByTheKernel)->Name("Notification/inotify")->UseRealTime();

} // namespace
