#pragma once

#include "Platform/CoreMIDI/Interface/ChangeWatch.h"
#include "Platform/CoreMIDI/Live/SequencerSnapshot.h"
#include "Platform/CoreMIDI/Store/Database.h"
#include "Platform/CoreMIDI/Store/ObjectEditor.h"
#include "Platform/CoreMIDI/Store/ObjectStore.h"

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <thread>
#include <type_traits>

namespace KestrinMIDI {

/// The process's one access to the MIDI objects: the database file, its objects in memory, and what
/// is plugged in. Use it through a ServiceSession.
class Service {
public:
    static Service& Instance();

    /// Replaces the reader of the machine's sequencer, for good; closes what is open.
    void UseReader(std::unique_ptr<SequencerReader> reader);
    /// Closes as at a clean exit. The next session opens anew.
    void Close();

private:
    friend class ServiceSession;

    Service();

    void Refresh();
    void OpenOrReadAnew();
    bool MayTryAgain();
    void Open();
    void Reopen();
    /// SQLITE_OK, or the error; the objects in memory are then those of before.
    int Read();
    void ReadOrGiveUp();
    void GiveUp(DatabaseProblem problem);
    void TakeSnapshot();
    OSStatus WritePlugged(const struct LiveStudio& studio, class LiveBinding& binding,
                          bool isAgain);

    // Changing. Changes that are made together stand between Begin, which takes the file's write
    // lock, and End, which commits; inside of others they join them. One that failed lets the rest
    // fail, and the outermost End undoes all.
    using Changing = std::function<OSStatus(ObjectEditor&)>;
    OSStatus Begin();
    OSStatus End();
    /// Runs `change` between a begin and an end.
    OSStatus Change(const Changing& change);
    void ForgetOldPendingDevices();
    void LeaveToParent();

    struct ChangesTogether {
        std::unique_ptr<Transaction> transaction;
        int rowsBefore; ///< how many rows the connection had changed at the begin
        OSStatus status = noErr;
        int depth = 1;
    };

    /// Waits for the other threads, except in a thread that has begun changes: it has the lock.
    std::unique_lock<std::mutex> Lock();

    std::mutex fMutex;
    std::atomic<std::thread::id> fChangingThread;
    std::unique_lock<std::mutex> fChangingLock; ///< held between the public begin and end
    std::optional<ChangesTogether> fChanges;
    std::unique_ptr<Database> fDatabase; ///< null while it can't be used
    DatabaseProblem fProblem;
    std::chrono::steady_clock::time_point fLastTry;
    KeyTable fKeys;
    ObjectStore fStore;
    std::size_t fRowsLost = 0;
    bool fIsDoubtful = false; ///< what is in memory may not be what is in the file
    std::unique_ptr<SequencerReader> fReader;
    SequencerState fSequencer = SequencerState::Missing;
    std::vector<PluggedObject> fPlugged;
    std::set<const ChangeWatch*> fWatches;
    bool fIsSnapshotDue = false;            ///< what is plugged could not be written
    int fReadings = 0;                      ///< begun and not ended
    std::unique_lock<std::mutex> fForkLock; ///< held while the process is forked
    bool fIsForked = false;
};

/// One caller's use of the service: nobody else uses it meanwhile, and what other processes changed
/// is read. Where the database can't be used the store is empty and every change fails.
class ServiceSession {
public:
    ServiceSession();

    ObjectStore& Store() const { return fService.fStore; }
    KeyTable& Keys() const { return fService.fKeys; }
    const DatabaseProblem& Problem() const { return fService.fProblem; }
    /// Null while the database can't be used.
    Database* File() const { return fService.fDatabase.get(); }
    /// How many rows of the file make no sense and were passed over.
    std::size_t RowsLost() const { return fService.fRowsLost; }
    SequencerState Sequencer();

    /// A watch that is to ring when another caller takes a new snapshot; it lives until it is
    /// removed.
    void AddWatch(const ChangeWatch& watch) { fService.fWatches.insert(&watch); }
    void RemoveWatch(const ChangeWatch& watch) { fService.fWatches.erase(&watch); }
    /// Readable when LookForNews is worth calling; -1 while there is no sequencer.
    int SequencerDescriptor() const { return fService.fReader->Descriptor(); }

    /// Takes a new snapshot where something was plugged or unplugged since the last one, and
    /// notices a database file that another process replaced. Nothing of it during a reading.
    void LookForNews();
    /// Whether what is plugged could not be written; the next LookForNews tries again.
    bool IsWriteDue() const { return fService.fIsSnapshotDue; }

    using Change = Service::Changing;
    /// Whether the file has this value now. False while changes are made together, or a reading
    /// holds on to what was there before.
    bool HasStored(MIDIObjectRef ref, PropertyKey key, const PropertyValue& value);
    /// What `change` does comes into the file together or not at all. kMIDIServerStartErr where
    /// there is no database.
    OSStatus Apply(const Change& change);

    // Changes made together over several sessions, as <CoreMIDI/MIDIDatabase.h> tells. Between them
    // only this thread gets sessions.
    OSStatus BeginChanges();
    OSStatus EndChanges();
    void AbandonChanges();
    bool IsChanging() const { return fService.fChanges.has_value(); }

    // Readings over several sessions, as <CoreMIDI/MIDIDatabase.h> tells.
    void BeginReading();
    void EndReading();
    bool IsReading() const { return fService.fReadings > 0; }

private:
    bool IsWritable();

    Service& fService;
    std::unique_lock<std::mutex> fLock; ///< empty where the thread has it already
};

/// Runs the body of a C function, from which no exception may leave: `failed` answers for one.
template <typename Body>
auto Guarded(std::invoke_result_t<Body&> failed, Body body) noexcept {
    try {
        return body();
    } catch (...) {
        return failed;
    }
}

/// Runs the body of a C function in a session.
template <typename Body>
auto InSession(std::invoke_result_t<Body&, ServiceSession&> failed, Body body) noexcept {
    return Guarded(failed, [&body] {
        ServiceSession session;
        return body(session);
    });
}

} // namespace KestrinMIDI
