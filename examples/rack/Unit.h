#pragma once

#include "examples/rack/MessageSplitter.h"

#include <array>
#include <functional>
#include <string>

/// The surfaces that the rack can play.
enum class UnitModel : std::uint8_t { Main, Extender, HUI };

/// One surface: what it answers, where its faders stand, what its display and lamps show. Its
/// protocol is that of the Logic Control and Mackie Control user manuals' appendices; the HUI's
/// faders and display follow the published tables of that unit.
class Unit {
public:
    static constexpr int kStrips = 8;
    static constexpr int kMasterStrip = 8; ///< the main unit has one
    static constexpr int kHighestPosition = 0x3FFF;

    /// `send` takes whole messages to the host; `report` a line for a person on what the host did,
    /// in which strips count from 1, the master fader being 9.
    struct Host {
        std::function<void(const MidiBytes& message)> send;
        std::function<void(const std::string& line)> report;
    };

    /// `number` makes the serial number, so that no two units of a rack have the same.
    Unit(UnitModel model, int number, Host host);

    /// What it sends when it is switched on.
    void SwitchOn();

    /// Bytes from the host, in pieces of any length. A move of a fader by the host is not echoed.
    void Take(std::span<const std::uint8_t> bytes);

    // What a hand does. `strip` is 0 to 7, on a main unit also kMasterStrip.

    void Touch(int strip, bool touched);
    /// Touches the fader, moves it to `position` (0 to kHighestPosition) and lets it go.
    void Move(int strip, int position);
    /// Presses and releases a button, named by its note number.
    void Press(int note);
    /// Says any whole message.
    void Send(const MidiBytes& message) { fHost.send(message); }

    bool HasStrip(int strip) const;
    int Position(int strip) const { return fPositions.at(static_cast<std::size_t>(strip)); }
    /// A line of the display, 0 or 1.
    std::string DisplayLine(int line) const;

private:
    void TakeMessage(const MidiBytes& message);
    void TakeExclusive(const MidiBytes& message);
    void TakeCommand(std::uint8_t command, std::span<const std::uint8_t> body);
    void TakeHUIDisplay(std::span<const std::uint8_t> body);
    void TakeHUIControl(std::uint8_t control, std::uint8_t value);
    void TakeFader(int strip, int position);
    void WriteDisplay(std::size_t offset, std::span<const std::uint8_t> text);
    void SendPosition(int strip);
    void SendExclusive(std::uint8_t command, const MidiBytes& body);
    MidiBytes Serial() const;

    UnitModel fModel;
    int fNumber;
    Host fHost;
    MessageSplitter fSplitter;
    std::array<int, kStrips + 1> fPositions{};
    std::string fDisplay;
};
