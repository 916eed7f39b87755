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

void Service::UseReader(std::unique_ptr<SequencerReader> reader) {
    Close();
    const std::lock_guard lock(fMutex);
    fReader = std::move(reader);
}

void Service::Close() {
    const std::lock_guard lock(fMutex);
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
    fDatabase->Abandon();
    fDatabase.reset();
    fPlugged.clear();
    fIsForked = true;
    fStore = {};
}

void Service::Refresh() {
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
}

OSStatus Service::WritePlugged(const LiveStudio& studio, LiveBinding& binding) {
    return ChangeTogether([&](ObjectEditor& editor) { return binding.Write(studio, editor); });
}

OSStatus Service::ChangeTogether(const std::function<OSStatus(ObjectEditor&)>& change) {
    OSStatus status;
    {
        Transaction transaction(*fDatabase);
        status = transaction.Status();
        if (status == noErr && fDatabase->WasChangedByOthers())
            status = StatusOf(Read());
        ObjectEditor editor(*fDatabase, fKeys, fStore);
        if (status == noErr)
            status = change(editor);
        if (status == noErr)
            status = transaction.Commit();
    }
    if (status != noErr)
        ReadOrGiveUp(); // what is in memory may be ahead of the file
    return status;
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
    , fLock(fService.fMutex) {
    fService.Refresh();
}

SequencerState ServiceSession::Sequencer() {
    if (!File())
        fService.fSequencer = fService.fReader->Read().state;
    return fService.fSequencer;
}

void ServiceSession::LookForNews() {
    if (IsWritable() && fService.fReader->HasChanged())
        fService.TakeSnapshot();
}

OSStatus ServiceSession::Apply(const Change& change) {
    if (!IsWritable())
        return kMIDIServerStartErr;
    ObjectEditor editor(*File(), Keys(), Store());
    return change(editor);
}

OSStatus ServiceSession::ApplyTogether(const Change& change) {
    return IsWritable() ? fService.ChangeTogether(change) : OSStatus(kMIDIServerStartErr);
}

bool ServiceSession::IsWritable() {
    if (File() && File()->HasMoved())
        fService.Reopen();
    return File() != nullptr;
}

} // namespace KestrinMIDI
