#include "Platform/CoreFoundation/Text.h"
#include "Platform/CoreMIDI/Interface/ChangeWatch.h"
#include "Platform/CoreMIDI/Interface/Service.h"
#include "Platform/CoreMIDI/Interface/SetupState.h"

#include <CoreFoundation/CFHolder.h>
#include <CoreMIDI/MIDIDatabase.h>

#include <atomic>
#include <map>

using namespace KestrinMIDI;

namespace {

/// A change together with the text of its key, which the service may be asked for only inside of a
/// session.
struct Message {
    SetupChange change;
    CFHolder<CFStringRef> key;
};

/// One that is told of changes. It tells the differences between the states that it meets, so a
/// state that was there only in between is passed over.
class Client {
public:
    Client(MIDINotifyProc procedure, void* context);
    ~Client();
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;

    int Number() const { return fWatch.Number(); }
    OSStatus Deliver();
    /// Tells nothing from here on, also if it is just telling something.
    void Silence() { fIsSilent = true; }

private:
    std::vector<Message> TakeMessages();
    void Tell(const Message& message) const;

    const MIDINotifyProc fProcedure;
    void* const fContext;
    ChangeWatch fWatch;
    SetupState fKnown;
    bool fIsUsable = false;
    std::atomic<bool> fIsSilent = false;
    std::atomic<bool> fIsDelivering = false;
};

Client::Client(MIDINotifyProc procedure, void* context)
    : fProcedure(procedure)
    , fContext(context) {
    TakeMessages();
    ServiceSession().AddWatch(
        fWatch); // last: where something fails there is no end to take it back
}

Client::~Client() {
    ServiceSession().RemoveWatch(fWatch);
}

OSStatus Client::Deliver() {
    if (fIsDelivering.exchange(true))
        return noErr;
    const OSStatus status = Guarded(kMIDIUnknownError, [this] {
        for (const Message& message : TakeMessages())
            Tell(message);
        return noErr;
    });
    fIsDelivering = false;
    return status;
}

std::vector<Message> Client::TakeMessages() {
    fWatch.Rearm(DatabasePath());
    ServiceSession session;
    session.LookForNews();
    const bool wasUsable = std::exchange(fIsUsable, session.File() != nullptr);
    const bool isAgain = session.IsWriteDue() || session.IsReading();
    fWatch.LookedWith({fIsUsable, isAgain, session.SequencerDescriptor()});
    std::vector<Message> messages;
    // What can't be read is as it was, as far as anybody knows.
    if (fIsUsable) {
        SetupState state = StateOf(session.Store());
        for (const SetupChange& change : ChangesBetween(fKnown, state))
            messages.push_back(
                {change, CFHolder<CFStringRef>(MakeString(session.Keys().TextOf(change.key)))});
        fKnown = std::move(state);
    }
    if (!messages.empty() || wasUsable != fIsUsable)
        messages.push_back({});
    return messages;
}

void Client::Tell(const Message& message) const {
    if (fIsSilent || !fProcedure)
        return;
    const SetupChange& change = message.change;
    const auto tell = [&](const auto& notification) {
        fProcedure(reinterpret_cast<const MIDINotification*>(&notification), fContext);
    };
    switch (change.kind) {
    case kMIDIMsgObjectAdded:
    case kMIDIMsgObjectRemoved:
        return tell(MIDIObjectAddRemoveNotification{
            change.kind, sizeof(MIDIObjectAddRemoveNotification), change.owner, change.ownerType,
            change.object, change.type});
    case kMIDIMsgPropertyChanged:
        return tell(MIDIObjectPropertyChangeNotification{
            change.kind, sizeof(MIDIObjectPropertyChangeNotification), change.object, change.type,
            message.key.Get()});
    default:
        return tell(MIDINotification{change.kind, sizeof(MIDINotification)});
    }
}

/// The clients by reference. One that is being used lives on until that use ends.
class Clients {
public:
    MIDIClientRef Add(std::shared_ptr<Client> client) {
        const std::lock_guard lock(fMutex);
        fClients.emplace(++fLast, std::move(client));
        return fLast;
    }
    std::shared_ptr<Client> Find(MIDIClientRef ref) {
        const std::lock_guard lock(fMutex);
        const auto found = fClients.find(ref);
        return found == fClients.end() ? nullptr : found->second;
    }
    void Remove(MIDIClientRef ref) {
        const std::lock_guard lock(fMutex);
        fClients.erase(ref);
    }

private:
    std::mutex fMutex;
    std::map<MIDIClientRef, std::shared_ptr<Client>> fClients;
    MIDIClientRef fLast = 0;
};

Clients& AllClients() {
    static Clients& clients = *new Clients; // as the service: found by what ends late
    return clients;
}

} // namespace

OSStatus MIDIClientCreate(CFStringRef /*name*/, MIDINotifyProc notifyProc, void* notifyRefCon,
                          MIDIClientRef* outClient) {
    if (!outClient)
        return paramErr;
    return Guarded(kMIDIUnknownError, [=] {
        *outClient = AllClients().Add(std::make_shared<Client>(notifyProc, notifyRefCon));
        return noErr;
    });
}

OSStatus MIDIClientDispose(MIDIClientRef ref) {
    const std::shared_ptr<Client> client = AllClients().Find(ref);
    if (!client)
        return kMIDIInvalidClient;
    client->Silence();
    AllClients().Remove(ref);
    return noErr;
}

int KestrinMIDIClientGetDescriptor(MIDIClientRef ref) {
    const std::shared_ptr<Client> client = AllClients().Find(ref);
    return client ? client->Number() : -1;
}

OSStatus KestrinMIDIClientDeliver(MIDIClientRef ref) {
    const std::shared_ptr<Client> client = AllClients().Find(ref);
    if (!client)
        return kMIDIInvalidClient;
    return client->Deliver();
}
