#include "tools/midisetup/Output.h"

#include "tools/messages/Messages.h"

#include <unistd.h>

#include <cstdlib>

namespace MidiSetup {

namespace {

bool MayShowColour() {
    const char* refusal = std::getenv("NO_COLOR");
    const char* terminal = std::getenv("TERM");
    return isatty(STDOUT_FILENO) != 0 && (refusal == nullptr || *refusal == '\0') &&
           terminal != nullptr && std::string_view(terminal) != "dumb";
}

std::string Styled(const char* style, const std::string& text) {
    static const bool mayShowColour = MayShowColour();
    return mayShowColour ? style + text + "\033[0m" : text;
}

} // namespace

std::string Quoted(std::string_view text) {
    return Message("\"%1\"", Printable(text));
}

std::string LowerCase(std::string_view text) {
    std::string lower(text);
    for (char& letter : lower) {
        if (letter >= 'A' && letter <= 'Z')
            letter = static_cast<char>(letter - 'A' + 'a');
    }
    return lower;
}

std::string Strong(const std::string& text) {
    return Styled("\033[1m", text);
}

std::string Faint(const std::string& text) {
    return Styled("\033[2m", text);
}

} // namespace MidiSetup
