// stand-in CLIENT PORTS: a mixer with a strip unit for each port of the sequencer client. It
// connects to them once, shakes hands with the units behind them, and prints a line for what each
// port hears. It ends with its standard input, and does what its lines say:
//
//   greet TEXT | fader PORT STRIP POSITION | send PORT HEXADECIMAL | join PORT PORT
//
// "greet" asks all units who they are; one that answers shows its port's number and the text.
// "join" connects two of the client's ports to each other. PORT and STRIP count from 1.

#include "examples/rack/Cables.h"
#include "examples/rack/Hexadecimal.h"
#include "examples/stand-in/SequencerPorts.h"

#include <unistd.h>

#include <algorithm>
#include <exception>
#include <iostream>
#include <sstream>

namespace {

constexpr std::uint8_t kMain = 0x14;
constexpr std::uint8_t kExtender = 0x15;
constexpr std::uint8_t kDeviceQuery = 0x00;
constexpr std::uint8_t kConnectionQuery = 0x01;
constexpr std::uint8_t kConnectionReply = 0x02;
constexpr std::uint8_t kDisplay = 0x12;
constexpr std::size_t kSerialLength = 7;
constexpr std::size_t kHeader = 6; // F0, three of the manufacturer, the family, the command

MidiBytes Exclusive(std::uint8_t family, std::uint8_t command, const MidiBytes& body) {
    MidiBytes message{0xF0, 0x00, 0x00, 0x66, family, command};
    message.insert(message.end(), body.begin(), body.end());
    message.push_back(0xF7);
    return message;
}

MidiBytes FaderMove(int strip, int position) {
    return {static_cast<std::uint8_t>(0xE0 | strip), static_cast<std::uint8_t>(position & 0x7F),
            static_cast<std::uint8_t>(position >> 7)};
}

class Mixer {
public:
    Mixer(const std::string& client, std::size_t count);

    Cables& Connections() { return *fCables; }
    void Hear(std::size_t port, std::span<const std::uint8_t> bytes);
    void Do(const std::string& line);

private:
    void Greet();
    void Answer(std::size_t port, const MidiBytes& query);
    void HearMessage(std::size_t port, const MidiBytes& message);

    std::vector<SequencerPort> fSurfaces;
    std::unique_ptr<Cables> fCables;
    std::vector<MessageSplitter> fSplitters;
    std::string fText = "hello";
};

Mixer::Mixer(const std::string& client, std::size_t count)
    : fSurfaces(AwaitPorts(client, count))
    , fSplitters(count) {
    const std::string name = "Stand-in Mixer";
    std::vector<std::string> strips;
    for (std::size_t i = 0; i < count; ++i)
        strips.push_back("Strips " + std::to_string(i + 1));
    fCables = MakeProgramPorts(name, strips);
    const std::vector<SequencerPort> own = AwaitPorts(name, count);
    for (std::size_t i = 0; i < count; ++i)
        Connect(own[i], fSurfaces[i]);
    Greet();
}

void Mixer::Greet() {
    for (std::size_t port = 0; port < fSplitters.size(); ++port)
        for (const std::uint8_t family : {kMain, kExtender})
            fCables->Send(port, Exclusive(family, kDeviceQuery, {}));
}

void Mixer::Hear(std::size_t port, std::span<const std::uint8_t> bytes) {
    fSplitters[port].Take(bytes,
                          [this, port](const MidiBytes& message) { HearMessage(port, message); });
}

void Mixer::Answer(std::size_t port, const MidiBytes& query) {
    const std::uint8_t family = query[kHeader - 2];
    MidiBytes reply(query.begin() + kHeader, query.begin() + kHeader + kSerialLength);
    reply.insert(reply.end(), {0, 0, 0, 0}); // most units take any response
    fCables->Send(port, Exclusive(family, kConnectionReply, reply));
    const std::string text = std::to_string(port + 1) + " " + fText + " ";
    MidiBytes label{0}; // the display's upper left
    label.insert(label.end(), text.begin(), text.end());
    fCables->Send(port, Exclusive(family, kDisplay, label));
}

void Mixer::HearMessage(std::size_t port, const MidiBytes& message) {
    std::cout << port + 1 << ' ';
    const MidiBytes start = Exclusive(kMain, kConnectionQuery, {});
    const bool isQuery = message.size() > kHeader + kSerialLength && message[0] == 0xF0 &&
                         message[kHeader - 1] == kConnectionQuery &&
                         std::equal(start.begin(), start.begin() + kHeader - 2, message.begin());
    if (isQuery) {
        std::cout << "unit " << Hexadecimal({&message[kHeader - 2], 1}) << std::endl;
        Answer(port, message);
    } else if ((message[0] & 0xF0) == 0xE0) {
        std::cout << "fader " << (message[0] & 0x0F) + 1 << ' ' << (message[1] | message[2] << 7)
                  << std::endl;
    } else if (message[0] == 0x90 && message[1] >= 0x68) {
        std::cout << (message[2] ? "touched " : "released ") << message[1] - 0x67 << std::endl;
    } else {
        std::cout << "heard " << Hexadecimal(message) << std::endl;
    }
}

void Mixer::Do(const std::string& line) {
    std::istringstream words(line);
    std::string what;
    std::string text;
    std::size_t port = 0;
    words >> what;
    if (what == "greet") {
        words >> fText;
        Greet();
        return;
    }
    words >> port;
    if (what == "fader") {
        int strip = 0;
        int position = 0;
        words >> strip >> position;
        fCables->Send(port - 1, FaderMove(strip - 1, position));
    } else if (what == "send") {
        words >> text;
        fCables->Send(port - 1, FromHexadecimal(text));
    } else if (what == "join") {
        std::size_t other = 0;
        words >> other;
        Connect(fSurfaces.at(port - 1), fSurfaces.at(other - 1));
    }
}

void Play(Mixer& mixer) {
    std::vector<pollfd> descriptors = mixer.Connections().Descriptors();
    descriptors.push_back({STDIN_FILENO, POLLIN, 0});
    std::string unfinished;
    for (;;) {
        poll(descriptors.data(), descriptors.size(), -1);
        mixer.Connections().Receive(
            [&mixer](std::size_t port, auto bytes) { mixer.Hear(port, bytes); });
        if (descriptors.back().revents == 0)
            continue;
        char bytes[4096];
        const ssize_t count = read(STDIN_FILENO, bytes, sizeof bytes);
        if (count <= 0)
            return;
        unfinished.append(bytes, static_cast<std::size_t>(count));
        for (std::size_t end; (end = unfinished.find('\n')) != std::string::npos;) {
            mixer.Do(unfinished.substr(0, end));
            unfinished.erase(0, end + 1);
        }
    }
}

} // namespace

int main(int count, char** arguments) {
    if (count != 3)
        return 2;
    try {
        Mixer mixer(arguments[1], std::stoul(arguments[2]));
        Play(mixer);
        return 0;
    } catch (const std::exception& problem) {
        std::cerr << problem.what() << '\n';
        return 1;
    }
}
