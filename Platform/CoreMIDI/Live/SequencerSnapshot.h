#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace KestrinMIDI {

// What the system tells of its MIDI devices and programs at one moment, in its own words: names are
// bytes as the kernel gives them, not yet cleaned.

struct SequencerPort {
    int number = 0;
    std::string name;
    bool isSource = false;      ///< others may read from it
    bool isDestination = false; ///< others may write to it
    bool isRawMIDI = false;     ///< it stands for a port of a raw MIDI device
};

struct SequencerClient {
    int number = 0;
    std::string name;
    bool isKernel = false;
    int card = -1; ///< of a kernel client: the sound card that it stands for, or -1
    std::vector<SequencerPort> ports;
};

/// The USB device that a sound card is part of, from sysfs. Texts that the device lacks are empty.
struct UsbUnit {
    std::string vendorID; ///< four hexadecimal digits
    std::string productID;
    std::string manufacturer;
    std::string product;
    std::string serial;
    std::string
        path; ///< controller and port chain, "0000:00:14.0-1.4": stays while it stays plugged there
};

struct SoundCard {
    int number = 0;
    std::string name;   ///< the short name, of 31 bytes at most
    std::string driver; ///< "snd-usb-audio"
    std::string path;   ///< the place of a card that is no USB device
    std::optional<UsbUnit> usb;
    std::string id; ///< what the names of its devices may call it: "USB", "USB_1"
};

enum class SequencerState { Ready, Missing, NotPermitted };

struct SequencerSnapshot {
    SequencerState state = SequencerState::Missing;
    int ownClient = -1; ///< the number of the client that took the snapshot
    std::vector<SequencerClient> clients;
    std::vector<SoundCard> cards;
};

/// Takes snapshots.
class SequencerReader {
public:
    virtual ~SequencerReader() = default;

    /// Takes a snapshot in one go. What is unplugged while it is taken is left out.
    virtual SequencerSnapshot Read() = 0;
    /// Whether something was plugged, unplugged or renamed since the last Read. Cheap.
    virtual bool HasChanged() = 0;
    /// Readable when HasChanged is worth asking; -1 while there is no sequencer.
    virtual int Descriptor() const = 0;
};

/// The reader of the machine's own sequencer and sound cards.
std::unique_ptr<SequencerReader> MakeSequencerReader();

} // namespace KestrinMIDI
