#include "Platform/CoreMIDI/Interface/Service.h"

#include "Platform/CoreMIDI/Live/LiveBinding.h"
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
    pthread_atfork(nullptr, nullptr, [] { Instance().LeaveToParent(); });
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
    if (fDatabase)
        fDatabase->CloseCleanly();
    fDatabase.reset();
    fStore = {};
    fPlugged.clear();
    fProblem = {};
    fLastTry = {};
}

void Service::LeaveToParent() {
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
    if (fChanges) // nobody else can change anything now
        return;
    if (!fDatabase) {
        if (MayTryAgain())
            Open();
    } else if (fDatabase->WasChangedByOthers()) {
        ReadOrGiveUp();
    }
}

bool Service::MayTryAgain() {
    if (fIsForked) {
        fProblem = {kKestrinMIDIDatabaseLocked,
                    "This process was forked from one that uses the MIDI database, which remains "
                    "with that one."};
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
    fDatabase->CloseUntouched();
    fDatabase.reset();
    fStore = {};
    Open();
}

int Service::Read() {
    fDatabase->MarkRead();
    ObjectStore store;
    const LoadResult result = LoadObjects(fDatabase->Connection(), fKeys, store);
    if (result.code != SQLITE_OK)
        return result.code;
    fStore = std::move(store);
    fRowsLost = result.lost;
    fStore.SetPlugged(fPlugged);
    return SQLITE_OK;
}

void Service::ReadOrGiveUp() {
    const int code = Read();
    if (code == SQLITE_OK)
        return;
    fProblem = ProblemOf(code, fDatabase->Path());
    fDatabase->CloseUntouched();
    fDatabase.reset();
    fStore = {};
}

void Service::TakeSnapshot() {
    const SequencerSnapshot snapshot = fReader->Read();
    fSequencer = snapshot.state;
    const LiveStudio studio = StudioOf(snapshot);
    LiveBinding binding(fStore);
    if (!binding.Find(studio) && WritePlugged(studio, binding) != noErr)
        return;
    fPlugged = binding.Plugged();
    fStore.SetPlugged(fPlugged);
    for (const ChangeWatch* const watch : fWatches)
        watch->Ring();
}

OSStatus Service::WritePlugged(const LiveStudio& studio, LiveBinding& binding) {
    return ChangeTogether([&](ObjectEditor& editor) { return binding.Write(studio, editor); });
}

OSStatus Service::Begin() {
    if (fChanges) {
        fChanges->depth += fChanges->status == noErr ? 1 : 0;
        return fChanges->status;
    }
    auto transaction = std::make_unique<Transaction>(*fDatabase);
    OSStatus status = transaction->Status();
    if (status == noErr && fDatabase->WasChangedByOthers())
        status = StatusOf(Read());
    if (status == noErr)
        fChanges = {std::move(transaction)};
    return status;
}

OSStatus Service::End() {
    OSStatus status = fChanges->status;
    if (--fChanges->depth > 0)
        return status;
    if (status == noErr)
        status =
            fDatabase->HasMoved() ? OSStatus(kMIDIServerStartErr) : fChanges->transaction->Commit();
    fChanges.reset();
    if (status != noErr && fDatabase)
        ReadOrGiveUp(); // what is in memory is ahead of the file
    return status;
}

OSStatus Service::Change(const Changing& change) {
    if (fChanges && fChanges->status != noErr)
        return fChanges->status;
    if (fChanges)
        fChanges->status = kMIDIUnknownError; // stays where `change` throws
    ObjectEditor editor(*fDatabase, fKeys, fStore);
    const OSStatus status = change(editor);
    if (fChanges)
        fChanges->status = status;
    return status;
}

OSStatus Service::ChangeTogether(const Changing& change) {
    if (const OSStatus status = Begin(); status != noErr)
        return status;
    try {
        Change(change);
    } catch (...) {
        End();
        throw;
    }
    return End();
}

void Service::ForgetOldPendingDevices() {
    const std::int64_t yesterday = UnixTime() - kDaySeconds;
    const ObjectStore::List pending = fStore.PendingDevices();
    ObjectEditor editor(*fDatabase, fKeys, fStore);
    for (const StoredObject* const device : pending) {
        if (*device->pendingSince < yesterday)
            editor.Remove(*fStore.Find(device->ref));
    }
}

ServiceSession::ServiceSession()
    : fService(Service::Instance())
    , fLock(fService.Lock()) {
    fService.Refresh();
}

SequencerState ServiceSession::Sequencer() {
    if (!File())
        fService.fSequencer = fService.fReader->Read().state;
    return fService.fSequencer;
}

void ServiceSession::LookForNews() {
    // A list that is walked while changes are made stays as it is.
    if (!IsChanging() && IsWritable() && fService.fReader->HasChanged())
        fService.TakeSnapshot();
}

OSStatus ServiceSession::Apply(const Change& change) {
    return IsWritable() ? fService.Change(change) : OSStatus(kMIDIServerStartErr);
}

OSStatus ServiceSession::ApplyTogether(const Change& change) {
    return IsWritable() ? fService.ChangeTogether(change) : OSStatus(kMIDIServerStartErr);
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
    const OSStatus status = fService.End();
    if (!IsChanging()) {
        fService.fChangingThread = std::thread::id();
        fLock = std::move(fService.fChangingLock);
    }
    return status;
}

void ServiceSession::AbandonChanges() {
    if (!IsChanging())
        return;
    if (fService.fChanges->status == noErr)
        fService.fChanges->status = kKestrinMIDIErrAbandoned;
    EndChanges();
}

bool ServiceSession::IsWritable() {
    if (!IsChanging() && File() && File()->HasMoved())
        fService.Reopen();
    return File() != nullptr;
}

} // namespace KestrinMIDI
