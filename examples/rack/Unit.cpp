#include "examples/rack/Unit.h"

#include "examples/rack/Hexadecimal.h"

#include <algorithm>
#include <utility>

namespace {

constexpr std::size_t kLineLength = 56;
constexpr std::uint8_t kHUIFamily = 0x05;
constexpr std::uint8_t kFirstTouchNote = 0x68;
constexpr std::uint8_t kPressed = 0x7F;

// Commands of the system exclusive messages.
constexpr std::uint8_t kDeviceQuery = 0x00;
constexpr std::uint8_t kHostConnectionQuery = 0x01;
constexpr std::uint8_t kHostConnectionReply = 0x02;
constexpr std::uint8_t kHostConnectionConfirmed = 0x03;
constexpr std::uint8_t kHostConnectionRefused = 0x04;
constexpr std::uint8_t kDisplay = 0x12;
constexpr std::uint8_t kVersionRequest = 0x13;
constexpr std::uint8_t kVersionReply = 0x14;
constexpr std::uint8_t kFadersToMinimum = 0x61;
constexpr std::uint8_t kLampsOff = 0x62;
constexpr std::uint8_t kReset = 0x63;

// The HUI's controllers come in pairs: the high seven bits of zone z in 0z, the low ones in 2z.
constexpr std::uint8_t kHUILow = 0x20;
constexpr std::uint8_t kHUIZoneSelect = 0x0F;
constexpr std::uint8_t kHUIPortOn = 0x40; // of port 0, the fader's touch
constexpr std::uint8_t kHUIPortOff = 0x00;

const MidiBytes kManufacturer{0x00, 0x00, 0x66};
const MidiBytes kIdentityRequest{0xF0, 0x7E, 0x7F, 0x06, 0x01, 0xF7};
const MidiBytes kVersion{'V', '4', '.', '0', '2'};

std::uint8_t FamilyOf(UnitModel model) {
    switch (model) {
    case UnitModel::Main:
        return 0x14;
    case UnitModel::Extender:
        return 0x15;
    case UnitModel::HUI:
        break;
    }
    return kHUIFamily;
}

std::uint8_t Low(int position) {
    return static_cast<std::uint8_t>(position & 0x7F);
}

std::uint8_t High(int position) {
    return static_cast<std::uint8_t>(position >> 7);
}

} // namespace

Unit::Unit(UnitModel model, int number, Host host)
    : fModel(model)
    , fNumber(number)
    , fHost(std::move(host))
    , fDisplay(2 * kLineLength, ' ') {}

MidiBytes Unit::Serial() const {
    return {'R',
            'A',
            'C',
            'K',
            '0',
            static_cast<std::uint8_t>('0' + fNumber / 10 % 10),
            static_cast<std::uint8_t>('0' + fNumber % 10)};
}

bool Unit::HasStrip(int strip) const {
    return strip >= 0 && (strip < kStrips || (strip == kMasterStrip && fModel == UnitModel::Main));
}

std::string Unit::DisplayLine(int line) const {
    return fDisplay.substr(static_cast<std::size_t>(line) * kLineLength, kLineLength);
}

// From the host

void Unit::Take(std::span<const std::uint8_t> bytes) {
    fSplitter.Take(bytes, [this](const MidiBytes& message) { TakeMessage(message); });
}

void Unit::TakeMessage(const MidiBytes& message) {
    const std::uint8_t kind = message[0] & 0xF0;
    const bool isHUI = fModel == UnitModel::HUI;
    if (message[0] == 0xF0)
        TakeExclusive(message);
    else if (isHUI && message == MidiBytes{0x90, 0x00, 0x00})
        fHost.send({0x90, 0x00, kPressed}); // the host asks about once a second who is alive
    else if (isHUI && message[0] == 0xB0)
        TakeHUIControl(message[1], message[2]);
    else if (!isHUI && kind == 0xE0)
        TakeFader(message[0] & 0x0F, message[1] | message[2] << 7);
    else if (!isHUI && kind == 0x90)
        fHost.report("lamp " + Hexadecimal({&message[1], 1}) + (message[2] ? " on" : " off"));
    else
        fHost.report("heard " + Hexadecimal(message));
}

void Unit::TakeFader(int strip, int position) {
    if (!HasStrip(strip))
        return;
    fPositions[static_cast<std::size_t>(strip)] = position;
    fHost.report("fader " + std::to_string(strip + 1) + " " + std::to_string(position));
}

void Unit::TakeHUIControl(std::uint8_t control, std::uint8_t value) {
    const int strip = control & ~kHUILow;
    if (strip >= kStrips)
        return;
    const int position = Position(strip);
    if (control & kHUILow)
        TakeFader(strip, (position & ~0x7F) | value);
    else
        fPositions[static_cast<std::size_t>(strip)] = value << 7 | Low(position); // low bits follow
}

void Unit::TakeExclusive(const MidiBytes& message) {
    if (message == kIdentityRequest) {
        // The reply of the MIDI 1.0 specification: manufacturer, family, member, version.
        fHost.send({0xF0, 0x7E, 0x7F, 0x06, 0x02, 0x00, 0x00, 0x66, FamilyOf(fModel), 0x00, 0x00,
                    0x00, '4', '0', '2', ' ', 0xF7});
        return;
    }
    constexpr std::size_t kHeader = 6; // F0, three of the manufacturer, the family, the command
    const bool isOurs = message.size() > kHeader &&
                        std::equal(kManufacturer.begin(), kManufacturer.end(), message.begin() + 1);
    if (!isOurs)
        fHost.report("heard " + Hexadecimal(message));
    if (!isOurs || message[4] != FamilyOf(fModel))
        return;
    const std::span body(message.begin() + kHeader, message.end() - 1);
    if (fModel == UnitModel::HUI)
        TakeHUIDisplay(body);
    else
        TakeCommand(message[kHeader - 1], body);
}

void Unit::TakeCommand(std::uint8_t command, std::span<const std::uint8_t> body) {
    switch (command) {
    case kDeviceQuery:
        SwitchOn();
        break;
    case kHostConnectionReply: {
        // As most units do, it takes any response that is for its own serial number.
        const MidiBytes serial = Serial();
        const bool isRight = body.size() == serial.size() + 4 &&
                             std::equal(serial.begin(), serial.end(), body.begin());
        SendExclusive(isRight ? kHostConnectionConfirmed : kHostConnectionRefused, serial);
        fHost.report(isRight ? "connected" : "refused the host's reply");
        break;
    }
    case kVersionRequest:
        SendExclusive(kVersionReply, kVersion);
        break;
    case kDisplay:
        if (!body.empty())
            WriteDisplay(body[0], body.subspan(1));
        break;
    case kFadersToMinimum:
    case kReset:
        fPositions.fill(0);
        fHost.report("faders down");
        break;
    case kLampsOff:
        fHost.report("lamps off");
        break;
    default:
        break;
    }
}

/// Command 10 writes four characters over a strip, 12 ten characters into a zone of the main
/// display.
void Unit::TakeHUIDisplay(std::span<const std::uint8_t> body) {
    constexpr std::uint8_t kSmall = 0x10;
    constexpr std::uint8_t kLarge = 0x12;
    if (body.size() < 2)
        return;
    const std::size_t zone = body[1];
    if (body[0] == kSmall)
        WriteDisplay(zone * 4, body.subspan(2));
    else if (body[0] == kLarge)
        WriteDisplay(kLineLength + zone * 10, body.subspan(2));
}

void Unit::WriteDisplay(std::size_t offset, std::span<const std::uint8_t> text) {
    for (std::size_t i = 0; i < text.size() && offset + i < fDisplay.size(); ++i) {
        const bool isPrintable = text[i] >= 0x20 && text[i] < 0x7F;
        fDisplay[offset + i] = isPrintable ? static_cast<char>(text[i]) : '?';
    }
    fHost.report("display \"" + DisplayLine(0) + "\" \"" + DisplayLine(1) + "\"");
}

// To the host

void Unit::SwitchOn() {
    if (fModel == UnitModel::HUI)
        return;
    MidiBytes body = Serial();
    for (const std::uint8_t challenge : {0x0A, 0x1B, 0x2C, 0x3D})
        body.push_back(challenge);
    SendExclusive(kHostConnectionQuery, body);
}

void Unit::SendExclusive(std::uint8_t command, const MidiBytes& body) {
    MidiBytes message{0xF0};
    message.insert(message.end(), kManufacturer.begin(), kManufacturer.end());
    message.push_back(FamilyOf(fModel));
    message.push_back(command);
    message.insert(message.end(), body.begin(), body.end());
    message.push_back(0xF7);
    fHost.send(message);
}

void Unit::Touch(int strip, bool touched) {
    const auto number = static_cast<std::uint8_t>(strip);
    if (fModel == UnitModel::HUI) {
        fHost.send({0xB0, kHUIZoneSelect, number});
        fHost.send({0xB0, kHUIZoneSelect | kHUILow, touched ? kHUIPortOn : kHUIPortOff});
        return;
    }
    const auto note = static_cast<std::uint8_t>(kFirstTouchNote + number);
    fHost.send({0x90, note, static_cast<std::uint8_t>(touched ? kPressed : 0)});
}

void Unit::Move(int strip, int position) {
    Touch(strip, true);
    fPositions[static_cast<std::size_t>(strip)] = position;
    SendPosition(strip);
    Touch(strip, false);
}

void Unit::SendPosition(int strip) {
    const int position = Position(strip);
    const auto number = static_cast<std::uint8_t>(strip);
    if (fModel == UnitModel::HUI) {
        fHost.send({0xB0, number, High(position)});
        fHost.send({0xB0, static_cast<std::uint8_t>(number | kHUILow), Low(position)});
        return;
    }
    fHost.send({static_cast<std::uint8_t>(0xE0 | number), Low(position), High(position)});
}

void Unit::Press(int note) {
    const auto number = static_cast<std::uint8_t>(note);
    fHost.send({0x90, number, kPressed});
    fHost.send({0x90, number, 0});
}
