// Plays control surfaces, for those who have none at hand: as ports of a program, or at the far end
// of (emulated) cables.
//
//   rack main extender hui             three units as sequencer ports
//   rack main=hw:1,0 extender=hw:2,0   the same on raw MIDI devices
//
// It prints a line for whatever the host does to a unit and takes the lines of Hand.h; it ends with
// its standard input.

#include "examples/rack/Cables.h"
#include "examples/rack/Hand.h"

#include <unistd.h>

#include <exception>
#include <iostream>
#include <optional>

namespace {

struct WantedUnit {
    UnitModel model;
    std::string name;
    std::string device; ///< empty: a program's port
};

std::optional<WantedUnit> Wanted(const std::string& argument, std::size_t number) {
    const std::size_t equals = argument.find('=');
    const std::string kind = argument.substr(0, equals);
    const std::string device = equals == std::string::npos ? "" : argument.substr(equals + 1);
    const std::string prefix = std::to_string(number) + " ";
    if (kind == "main")
        return WantedUnit{UnitModel::Main, prefix + "Mackie Control", device};
    if (kind == "extender")
        return WantedUnit{UnitModel::Extender, prefix + "Mackie Control Exp", device};
    if (kind == "hui")
        return WantedUnit{UnitModel::HUI, prefix + "HUI", device};
    return std::nullopt;
}

int Usage() {
    std::cerr << "usage: rack UNIT...   each main, extender or hui, all as they are or all "
                 "=hw:CARD,DEVICE\n";
    return 2;
}

std::vector<WantedUnit> WantedUnits(int count, char** arguments) {
    std::vector<WantedUnit> wanted;
    for (int i = 1; i < count; ++i) {
        std::optional<WantedUnit> unit = Wanted(arguments[i], wanted.size() + 1);
        const bool isAlike =
            unit && (wanted.empty() || wanted[0].device.empty() == unit->device.empty());
        if (!isAlike)
            return {};
        wanted.push_back(*std::move(unit));
    }
    return wanted;
}

std::unique_ptr<Cables> PlugIn(const std::vector<WantedUnit>& wanted) {
    std::vector<std::string> names;
    std::vector<std::string> devices;
    for (const WantedUnit& unit : wanted) {
        names.push_back(unit.name);
        devices.push_back(unit.device);
    }
    return wanted[0].device.empty() ? MakeProgramPorts("Rack", names) : OpenRawDevices(devices);
}

std::vector<Unit> MakeUnits(const std::vector<WantedUnit>& wanted, Cables& cables) {
    std::vector<Unit> units;
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        Unit::Host host;
        host.send = [i, &cables](const MidiBytes& message) { cables.Send(i, message); };
        host.report = [i](const std::string& line) {
            std::cout << i + 1 << ' ' << line << std::endl;
        };
        units.emplace_back(wanted[i].model, static_cast<int>(i + 1), host);
    }
    return units;
}

/// Reads what has come of the standard input and does its whole lines. False at its end.
bool TakeLines(std::vector<Unit>& units, std::string& unfinished) {
    char bytes[512];
    const ssize_t count = read(STDIN_FILENO, bytes, sizeof bytes);
    if (count <= 0)
        return false;
    unfinished.append(bytes, static_cast<std::size_t>(count));
    for (std::size_t end; (end = unfinished.find('\n')) != std::string::npos;) {
        std::cout << DoByHand(units, unfinished.substr(0, end)) << std::flush;
        unfinished.erase(0, end + 1);
    }
    return true;
}

int Play(std::vector<Unit>& units, Cables& cables) {
    std::vector<pollfd> descriptors = cables.Descriptors();
    descriptors.insert(descriptors.begin(), {STDIN_FILENO, POLLIN, 0});
    std::string unfinished;
    for (;;) {
        poll(descriptors.data(), descriptors.size(), -1);
        const bool isPlugged =
            cables.Receive([&units](std::size_t unit, std::span<const std::uint8_t> bytes) {
                units[unit].Take(bytes);
            });
        if (!isPlugged) {
            std::cerr << "A cable was pulled out.\n";
            return 1;
        }
        if (descriptors[0].revents && !TakeLines(units, unfinished))
            return 0;
    }
}

} // namespace

int main(int count, char** arguments) {
    const std::vector<WantedUnit> wanted = WantedUnits(count, arguments);
    if (wanted.empty())
        return Usage();
    try {
        const std::unique_ptr<Cables> cables = PlugIn(wanted);
        std::vector<Unit> units = MakeUnits(wanted, *cables);
        for (Unit& unit : units)
            unit.SwitchOn();
        return Play(units, *cables);
    } catch (const std::exception& problem) {
        std::cerr << problem.what() << '\n';
        return 1;
    }
}
