#include "Platform/CoreMIDI/Interface/Service.h"

#include "Platform/CoreMIDI/Live/LiveBinding.h"
#include "Platform/CoreMIDI/Store/LockPatience.h"
#include "Platform/CoreMIDI/Store/ObjectLoading.h"

#include <pthread.h>

#include <cstdlib>
#include <utility>

namespace KestrinMIDI {

namespace {

constexpr auto kTryAgainAfter = std::chrono::milliseconds(500);
constexpr std::int64_t kDaySeconds = 86400;

std::int64_t UnixTime() {
    return std::chrono::duration_cast<std::chrono::seconds>(
               std::chrono::system_clock::now().time_since_epoch())
        .count();
}

} // namespace

Service& Service::Instance() {
    // Never destroyed: what other parts of the program do at its end finds it still there.
    static Service& service = *new Service;
    return service;
}

Service::Service()
    : fReader(MakeSequencerReader()) {
    std::atexit([] { Instance().Close(); });
    // Nobody is in the middle of a call while the process is forked, so that the child finds all
    // whole and the lock free.
    pthread_atfork([] { Instance().fForkLock = Instance().Lock(); },
                   [] { const auto ending = std::move(Instance().fForkLock); },
                   [] {
                       const auto ending = std::move(Instance().fForkLock);
                       Instance().LeaveToParent();
                   });
}

std::unique_lock<std::mutex> Service::Lock() {
    if (fChangingThread.load() == std::this_thread::get_id())
        return {};
    return std::unique_lock(fMutex);
}

void Service::UseReader(std::unique_ptr<SequencerReader> reader) {
    Close();
    const auto lock = Lock();
    fReader = std::move(reader);
}

void Service::Close() {
    const auto lock = Lock();
    if (fChanges) {
        fChanges->status = kKestrinMIDIErrAbandoned;
        fChanges->transaction.reset();
    }
    fReadings = 0; // what is opened next is another moment
    if (fDatabase)
        fDatabase->CloseCleanly();
    fDatabase.reset();
    fStore = {};
    fPlugged.clear();
    fProblem = {};
    fLastTry = {};
}

void Service::LeaveToParent() {
    fReadings = 0; // begun by threads that stay behind
    if (!fDatabase)
        return;
    if (fChanges && fChanges->transaction)
        fChanges->transaction->Abandon();
    fChanges.reset();
    fChangingThread = std::thread::id();
    fChangingLock = {};
    fDatabase->Abandon();
    fDatabase.reset();
    fPlugged.clear();
    fIsForked = true;
    fStore = {};
}

void Service::Refresh() {
    if (fChanges || fReadings > 0) // nobody else can change anything, or it is not to be seen
        return;
    try {
        OpenOrReadAnew();
    } catch (const std::exception& error) {
        GiveUp(
            {kKestrinMIDIDatabaseUnreachable,
             Sentence("The MIDI database %1 can't be used (%2).", DatabasePath(), error.what())});
    }
}

void Service::OpenOrReadAnew() {
    if (!fDatabase) {
        if (MayTryAgain())
            Open();
    } else if (fIsDoubtful || fDatabase->WasChangedByOthers()) {
        ReadOrGiveUp();
    }
}

bool Service::MayTryAgain() {
    if (fIsForked) {
        fProblem = {
            kKestrinMIDIDatabaseLocked,
            Sentence("This process was forked from one that uses the MIDI database, which remains "
                     "with that one.")};
        return false;
    }
    const auto now = std::chrono::steady_clock::now();
    const bool isFirst = fLastTry == std::chrono::steady_clock::time_point();
    if (!isFirst && now - fLastTry < kTryAgainAfter)
        return false;
    fLastTry = now;
    return true;
}

void Service::Open() {
    fPlugged.clear();
    fDatabase = Database::Open(DatabasePath(), fProblem);
    if (fDatabase)
        ReadOrGiveUp();
    if (!fDatabase)
        return;
    ForgetOldPendingDevices();
    TakeSnapshot();
}

void Service::Reopen() {
    GiveUp({});
    Open();
}

int Service::Read() {
    fIsDoubtful = true; // until all is read
    fDatabase->MarkRead();
    ObjectStore store;
    const LoadResult result = LoadObjects(fDatabase->Connection(), fKeys, store);
    if (result.code != SQLITE_OK)
        return result.code;
    fStore = std::move(store);
    fRowsLost = result.lost;
    fStore.SetPlugged(fPlugged);
    fIsDoubtful = false;
    return SQLITE_OK;
}

void Service::ReadOrGiveUp() {
    const int code = Read();
    if (code != SQLITE_OK)
        GiveUp(ProblemOf(code, fDatabase->Path()));
}

void Service::GiveUp(DatabaseProblem problem) {
    fProblem = std::move(problem);
    if (fDatabase)
        fDatabase->CloseUntouched();
    fDatabase.reset();
    fStore = {};
}

void Service::TakeSnapshot() {
    const bool wasDue = std::exchange(fIsSnapshotDue, true); // until all of it is in the file
    const SequencerSnapshot snapshot = fReader->Read();
    fSequencer = snapshot.state;
    const LiveStudio studio = StudioOf(snapshot);
    LiveBinding binding(fStore);
    fIsSnapshotDue = !binding.Find(studio) && WritePlugged(studio, binding, wasDue) != noErr;
    if (fIsSnapshotDue && fIsDoubtful)
        ReadOrGiveUp();
    if (fIsSnapshotDue)
        binding.Find(studio); // what is known already is there all the same
    const bool isNews = binding.Plugged() != fPlugged;
    fPlugged = binding.Plugged();
    fStore.SetPlugged(fPlugged);
    for (const ChangeWatch* const watch : fWatches) {
        if (isNews)
            watch->Ring();
    }
}

OSStatus Service::WritePlugged(const LiveStudio& studio, LiveBinding& binding, bool isAgain) {
    std::optional<Haste> haste;
    if (isAgain || !binding.LacksObjects())
        haste.emplace(); // all that is known can be used without
    return Change([&](ObjectEditor& editor) { return binding.Write(studio, editor); });
}

OSStatus Service::Begin() {
    if (fChanges) {
        fChanges->depth += fChanges->status == noErr ? 1 : 0;
        return fChanges->status;
    }
    auto transaction = std::make_unique<Transaction>(*fDatabase);
    if (transaction->Status() == noErr && fDatabase->HasMoved()) {
        // Another process repaired the file while this one waited for it.
        transaction.reset();
        Reopen();
        if (!fDatabase)
            return kMIDIServerStartErr;
        transaction = std::make_unique<Transaction>(*fDatabase);
    }
    OSStatus status = transaction->Status();
    if (status == noErr && (fIsDoubtful || fDatabase->WasChangedByOthers()))
        status = StatusOf(Read());
    if (status == noErr)
        fChanges = {std::move(transaction), sqlite3_total_changes(fDatabase->Connection())};
    return status;
}

OSStatus Service::End() {
    OSStatus status = fChanges->status;
    if (--fChanges->depth > 0)
        return status;
    fIsDoubtful = true; // until the commit, what is in memory is ahead of the file
    const int rowsBefore = fChanges->rowsBefore;
    const std::unique_ptr<Transaction> transaction = std::move(fChanges->transaction);
    fChanges.reset();
    if (status == noErr)
        status = transaction->Commit();
    const bool isUndone = status != noErr && fDatabase;
    fIsDoubtful = isUndone && sqlite3_total_changes(fDatabase->Connection()) != rowsBefore;
    return status;
}

OSStatus Service::Change(const Changing& change) {
    if (const OSStatus status = Begin(); status != noErr)
        return status;
    fChanges->status = kMIDIUnknownError; // stays where `change` throws
    try {
        ObjectEditor editor(*fDatabase, fKeys, fStore);
        fChanges->status = change(editor);
    } catch (...) {
        End();
        throw;
    }
    return End();
}

void Service::ForgetOldPendingDevices() {
    const std::int64_t yesterday = UnixTime() - kDaySeconds;
    std::vector<MIDIObjectRef> old;
    for (const StoredObject* const device : fStore.PendingDevices()) {
        if (*device->pendingSince < yesterday)
            old.push_back(device->ref);
    }
    if (old.empty())
        return;
    Change([&](ObjectEditor& editor) {
        OSStatus status = noErr;
        for (const MIDIObjectRef ref : old) {
            StoredObject* const device = fStore.Find(ref);
            if (device && device->pendingSince && status == noErr)
                status = editor.Remove(*device);
        }
        return status;
    });
}

ServiceSession::ServiceSession()
    : fService(Service::Instance())
    , fLock(fService.Lock()) {
    fService.Refresh();
}

SequencerState ServiceSession::Sequencer() {
    if (!File() && !fService.fIsForked)
        fService.fSequencer = fService.fReader->Read().state;
    return fService.fSequencer;
}

void ServiceSession::LookForNews() {
    // A list that is walked during these stays as it is.
    if (IsChanging() || IsReading() || !IsWritable())
        return;
    if (fService.fReader->HasChanged() || fService.fIsSnapshotDue)
        fService.TakeSnapshot();
}

OSStatus ServiceSession::Apply(const Change& change) {
    return IsWritable() ? fService.Change(change) : OSStatus(kMIDIServerStartErr);
}

bool ServiceSession::HasStored(MIDIObjectRef ref, PropertyKey key, const PropertyValue& value) {
    if (IsChanging() || IsReading() || KeyTable::IsLive(key) || !IsWritable())
        return false;
    const StoredObject* const object = Store().Find(ref);
    const PropertyValue* const present = object ? object->Own(key) : nullptr;
    return present && *present == value;
}

OSStatus ServiceSession::BeginChanges() {
    LookForNews();
    const OSStatus status = IsWritable() ? fService.Begin() : OSStatus(kMIDIServerStartErr);
    if (status == noErr && fLock) {
        fService.fChangingThread = std::this_thread::get_id();
        fService.fChangingLock = std::move(fLock);
    }
    return status;
}

OSStatus ServiceSession::EndChanges() {
    if (!IsChanging())
        return kMIDINotPermitted;
    if (fService.fChanges->depth == 1) {
        fService.fChangingThread = std::thread::id();
        fLock = std::move(fService.fChangingLock);
    }
    return fService.End();
}

void ServiceSession::AbandonChanges() {
    if (!IsChanging())
        return;
    if (fService.fChanges->status == noErr)
        fService.fChanges->status = kKestrinMIDIErrAbandoned;
    EndChanges();
}

void ServiceSession::BeginReading() {
    LookForNews();
    ++fService.fReadings;
}

void ServiceSession::EndReading() {
    if (IsReading())
        --fService.fReadings;
}

bool ServiceSession::IsWritable() {
    if (!IsChanging() && File() && File()->HasMoved())
        fService.Reopen();
    return File() != nullptr;
}

} // namespace KestrinMIDI
