#pragma once

// What the MIDI service offers beside its public names, for the tools that look after its database.

#include <CoreMIDI/CoreMIDI.h>

CF_EXTERN_C_BEGIN

// The database file: $KESTRIN_MIDI_DATABASE, else kestrin-midi/objects.sqlite3 under $XDG_DATA_HOME
// (~/.local/share when unset). It is made, with its folders, at the first call.

typedef SInt32 KestrinMIDIDatabaseState;
enum {
    kKestrinMIDIDatabaseReady = 0,
    kKestrinMIDIDatabaseNoFolder =
        1, ///< the folder isn't there and can't be made, or can't be used
    kKestrinMIDIDatabaseReadOnly = 2,
    kKestrinMIDIDatabaseDamaged = 3,
    kKestrinMIDIDatabaseNewer = 4,      ///< written by a newer version of this library
    kKestrinMIDIDatabaseForeign = 5,    ///< a database of some other program
    kKestrinMIDIDatabaseLocked = 6,     ///< another process has kept it locked for too long
    kKestrinMIDIDatabaseUnreachable = 7 ///< the disk is full or fails
};

/// Whether the database can be used; opens it where that was not done yet.
KestrinMIDIDatabaseState KestrinMIDIGetDatabaseState(void);

/// The reason why the database can't be opened, one English sentence for a person, or null when all
/// is well. The caller releases it. A program that speaks another language finds it in its table,
/// as it does the sentences below, when it takes the path of the database, or of its folder, and
/// what stands in parentheses at the end for variable.
CFStringRef KestrinMIDICopyDatabaseProblem(void);

/// Reads the whole file and looks for damage that opening it does not meet. Null when all is well,
/// else what was found. The caller releases it.
CFStringRef KestrinMIDICopyDatabaseDamage(void);

/// The file that is used, whether it is there or not. The caller releases it.
CFStringRef KestrinMIDICopyDatabasePath(void);

// Changes that belong together. A call that changes something waits up to 5 seconds for a lock of
// another process, and after that was in vain hardly at all until a second went by without such a
// call.

// Statuses of changes, beside those of <CoreMIDI/CoreMIDI.h>; the database can be read further on.
enum {
    kKestrinMIDIErrLocked = -28801,   ///< another process kept the database locked for too long
    kKestrinMIDIErrFull = -28802,     ///< the disk is full
    kKestrinMIDIErrReadOnly = -28803, ///< the file or its disk can't be written any more
    kKestrinMIDIErrDisk = -28804,     ///< the disk fails
    kKestrinMIDIErrDamaged = -28805,  ///< the file turned out to be damaged
    kKestrinMIDIErrAbandoned = -28806 ///< of KestrinMIDIEndChanges: changes inside were abandoned
};

/// What a status means: one English sentence for a person, or null for 0. The caller releases it.
CFStringRef KestrinMIDICopyStatusText(OSStatus status);

/// Begins changes that are stored together or not at all. It takes the database's write lock, so
/// that no call before the end waits for another process; the calls of other threads wait. What is
/// plugged in is looked for here and then stays as it is until the end. When it fails nothing was
/// begun and no end is due. Inside of changes that were begun already it joins them.
OSStatus KestrinMIDIBeginChanges(void);
/// Ends what the same thread began last. The outermost end stores all that was changed and tells
/// whether that is done, as safely as that of a single change. A change that failed in between, for
/// whatever reason, makes all that follow and the end fail with its status; nothing is changed
/// then. kMIDINotPermitted where this thread has begun nothing.
OSStatus KestrinMIDIEndChanges(void);
/// Ends what the same thread began last, and undoes all: also what stands around it.
void KestrinMIDIAbandonChanges(void);

// Reading what belongs together.

/// Begins a reading: until its end all calls of this process answer as of now, whatever others
/// change and whatever is plugged in or pulled out, so that no object is met twice or not at all
/// while a list is walked; clients are told afterwards. Where this process changes something, what
/// others changed before is seen from then on. It locks nothing, and fails only where memory ends:
/// then nothing was begun and no end is due. Inside of another reading it joins that.
OSStatus KestrinMIDIBeginReading(void);
/// Ends what was begun last, by whatever thread. It does nothing where nothing is begun, or after a
/// restart, which ends all readings.
void KestrinMIDIEndReading(void);

typedef struct {
    UInt32 objects;    ///< how many were saved
    UInt32 properties; ///< how many were saved
    UInt32 lost;       ///< objects and properties that were met but made no sense
    UInt32 unreadable; ///< objects that are known of and could not be read whole
} KestrinMIDIRepairCounts;

/// Sets a damaged file aside under a dated name beside it, with its log, and saves what can be read
/// of it into a new one, which takes its name in one step: whenever the repair is killed, that name
/// stands for one of the two, and repairing again clears up. Of a symbolic link its target is
/// repaired. `outSavedAs` gets the name of the file set aside (the caller releases it); both
/// results may be null. kMIDINotPermitted, and nothing touched, where the file is not damaged or
/// changes are being made together; else the statuses of changes.
OSStatus KestrinMIDIRepairDatabase(CFStringRef* outSavedAs, KestrinMIDIRepairCounts* outCounts);

// The sequencer that tells which devices are plugged in.

typedef SInt32 KestrinMIDISequencerState;
enum {
    kKestrinMIDISequencerReady = 0,
    kKestrinMIDISequencerMissing = 1,     ///< the machine has none
    kKestrinMIDISequencerNotPermitted = 2 ///< the user may not open it
};
KestrinMIDISequencerState KestrinMIDIGetSequencerState(void);

// Being told of changes, in the program's own event loop: wait until the descriptor is readable, as
// poll tells, then deliver what is due. While nothing changes it stays unreadable; now and then it
// is readable when nothing is due.

/// Belongs to the client, which lives as long; -1 where there is none.
int KestrinMIDIClientGetDescriptor(MIDIClientRef client);
/// Calls the client's procedure with what changed since the last time, on this thread. Inside of
/// that procedure it does nothing. kMIDIInvalidClient where there is no such client.
OSStatus KestrinMIDIClientDeliver(MIDIClientRef client);

/// A program whose sequencer client has a hidden port (SND_SEQ_PORT_CAP_NO_EXPORT) of this name
/// keeps all its ports from becoming objects. The port is to be made before the others.
#define KESTRIN_MIDI_UNLISTED_PORT "Kestrin MIDI: unlisted"

// Live properties: where an object is on this machine now. They are never stored, absent while it
// is unplugged, not for setting (kMIDINotPermitted) and no part of the numbered properties below.
// An entity has its client, port and raw MIDI name, a device the others; a program's endpoint has
// its client and port.

extern const CFStringRef kKestrinMIDIPropertySequencerClient; ///< "kestrin.alsa.client", integer
extern const CFStringRef kKestrinMIDIPropertySequencerPort;   ///< "kestrin.alsa.port", integer
extern const CFStringRef kKestrinMIDIPropertyCard;            ///< "kestrin.alsa.card", integer
extern const CFStringRef kKestrinMIDIPropertyCardID;    ///< "kestrin.alsa.cardID", string: "USB_1"
extern const CFStringRef kKestrinMIDIPropertyRawMIDI;   ///< "kestrin.alsa.rawMIDI", string:
                                                        ///< "hw:1,0,0", card, device and port on it
extern const CFStringRef kKestrinMIDIPropertyUSBPath;   ///< "kestrin.usb.path", string: controller
                                                        ///< and ports, "0000:00:14.0-1.4"
extern const CFStringRef kKestrinMIDIPropertyUSBSerial; ///< "kestrin.usb.serial", string; absent
                                                        ///< where the unit has none
extern const CFStringRef kKestrinMIDIPropertyUSBVendorProduct; ///< "USBVendorProduct", integer: the
                                                               ///< vendor ID in the upper 16 bits

/// Whether a device, plugged in or not, is a unit that is known by its serial number. One without
/// is known by what it is called and the port that it is plugged into.
Boolean KestrinMIDIDeviceHasSerial(MIDIDeviceRef device);

// An object's own properties by number, for listing them: the keys in alphabetical order, with
// "uniqueID" only where it is asked for by name. An unknown object has none.

ItemCount KestrinMIDIObjectGetNumberOfProperties(MIDIObjectRef object);
/// Null where the index is out of range. The caller releases it.
CFStringRef KestrinMIDIObjectCopyPropertyKey(MIDIObjectRef object, ItemCount index0);

/// The programs' own endpoints that have no entity, plugged in or not, come after the devices.
ItemCount KestrinMIDIGetNumberOfVirtualEndpoints(void);
MIDIEndpointRef KestrinMIDIGetVirtualEndpoint(ItemCount index0);

CF_EXTERN_C_END
