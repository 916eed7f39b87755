#include "examples/rack/Hand.h"

#include "examples/rack/Hexadecimal.h"

#include <sstream>

namespace {

/// A number of the line, or -1 where there is none in its place or it is out of range.
int NumberIn(std::istringstream& words, int base, int highest) {
    std::string word;
    words >> word;
    std::size_t used = 0;
    int number = -1;
    try {
        number = std::stoi(word, &used, base);
    } catch (const std::exception&) {
        return -1;
    }
    return used == word.size() && number >= 0 && number <= highest ? number : -1;
}

std::string Shown(const Unit& unit) {
    std::string text = "\"" + unit.DisplayLine(0) + "\"\n\"" + unit.DisplayLine(1) + "\"\nfaders";
    for (int strip = 0; unit.HasStrip(strip); ++strip)
        text += " " + std::to_string(unit.Position(strip));
    return text + "\n";
}

/// "touch 3", "release 3", "move 3 8192"
std::string MoveFader(Unit& unit, const std::string& what, std::istringstream& words) {
    const int strip = NumberIn(words, 10, Unit::kMasterStrip + 1) - 1;
    if (!unit.HasStrip(strip))
        return "This unit has no such strip.\n";
    if (what != "move") {
        unit.Touch(strip, what == "touch");
        return {};
    }
    const int position = NumberIn(words, 10, Unit::kHighestPosition);
    if (position < 0)
        return "A position is 0 to 16383.\n";
    unit.Move(strip, position);
    return {};
}

std::string PressButton(Unit& unit, std::istringstream& words) {
    const int note = NumberIn(words, 16, 0x7F);
    if (note < 0)
        return "A button is a note number of two hexadecimal digits, 00 to 7F.\n";
    unit.Press(note);
    return {};
}

std::string SendBytes(Unit& unit, std::istringstream& words) {
    std::string digits;
    words >> digits;
    const MidiBytes message = FromHexadecimal(digits);
    if (message.empty())
        return "A message is hexadecimal digits, two for each byte.\n";
    unit.Send(message);
    return {};
}

} // namespace

std::string DoByHand(std::vector<Unit>& units, const std::string& line) {
    std::istringstream words(line);
    const int number = NumberIn(words, 10, static_cast<int>(units.size()));
    if (number < 1)
        return "Begin with a unit's number, 1 to " + std::to_string(units.size()) + ".\n";
    Unit& unit = units[static_cast<std::size_t>(number - 1)];
    std::string what;
    words >> what;
    if (what == "show")
        return Shown(unit);
    if (what == "press")
        return PressButton(unit, words);
    if (what == "send")
        return SendBytes(unit, words);
    if (what == "touch" || what == "release" || what == "move")
        return MoveFader(unit, what, words);
    return "Say touch, release, move, press, send or show.\n";
}
