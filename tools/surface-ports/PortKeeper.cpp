#include "tools/surface-ports/PortKeeper.h"

#include "Surfaces/PlacedSurfaces.h"

#include "tools/messages/Messages.h"
#include "tools/messages/PrintableText.h"

#include <algorithm>

namespace SurfacePorts {

namespace {

std::vector<std::string> NamesOf(const Group& group) {
    std::vector<std::string> names;
    for (const Unit& unit : group.units)
        names.push_back(SurfacePortName(static_cast<int>(names.size()) + 1, unit.name));
    return names;
}

std::vector<Route> RoutesOf(const Plan& plan) {
    std::vector<Route> routes;
    for (const Group& group : plan) {
        for (std::size_t i = 0; i < group.units.size(); ++i)
            routes.push_back({group.number, static_cast<int>(i), group.units[i].id});
    }
    return routes;
}

} // namespace

std::set<std::string> PortKeeper::Keep(const Plan& plan) {
    fComplaints.clear();
    fIsWaiting = false;
    CloseGroupsWithout(plan);
    for (const Group& group : plan)
        KeepGroup(group);
    fSequencer.SetRoutes(RoutesOf(plan));
    for (const Group& group : plan) {
        for (const Unit& unit : group.units)
            KeepUnit(unit);
    }
    ForgetUnitsWithout(plan);
    return fComplaints;
}

void PortKeeper::CloseGroupsWithout(const Plan& plan) {
    std::erase_if(fPorts, [&](const auto& open) {
        const bool isLeft = std::none_of(plan.begin(), plan.end(), [&](const Group& group) {
            return group.number == open.first;
        });
        if (isLeft)
            fSequencer.CloseGroup(open.first);
        return isLeft;
    });
}

void PortKeeper::KeepGroup(const Group& group) {
    if (!fPorts.contains(group.number) &&
        !fSequencer.OpenGroup(group.number, SurfaceClientName(group.number))) {
        fComplaints.insert(
            Message("The sequencer has no room for %1.", SurfaceClientName(group.number)));
        return;
    }
    std::vector<std::string>& open = fPorts[group.number];
    const std::vector<std::string> wanted = NamesOf(group);
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        const int port = static_cast<int>(i);
        if (i < open.size()) {
            if (open[i] != wanted[i])
                fSequencer.RenamePort(group.number, port, wanted[i]);
            open[i] = wanted[i];
        } else if (fSequencer.OpenPort(group.number, port, wanted[i])) {
            open.push_back(wanted[i]);
        } else {
            fComplaints.insert(Message("The sequencer has no room for all ports of %1.",
                                       SurfaceClientName(group.number)));
            return;
        }
    }
    for (; open.size() > wanted.size(); open.pop_back())
        fSequencer.ClosePort(group.number, static_cast<int>(open.size()) - 1);
}

void PortKeeper::KeepUnit(const Unit& unit) {
    fUnits.insert(unit.id);
    // In this order: what a unit said before anybody listened comes now, and its mixer answers.
    KeepLink(unit, Direction::ToUnit, unit.to);
    KeepLink(unit, Direction::FromUnit, unit.from);
}

void PortKeeper::KeepLink(const Unit& unit, Direction direction,
                          const std::optional<Address>& address) {
    if (!address) {
        fSequencer.Unlink(unit.id, direction);
    } else if (fSequencer.Link(unit.id, direction, *address) == LinkState::Held) {
        fComplaints.insert(Message("%1 is held by another program; it is taken when it is free.",
                                   Printable(unit.name)));
        fIsWaiting = true;
    }
}

void PortKeeper::ForgetUnitsWithout(const Plan& plan) {
    std::set<MIDIUniqueID> wanted;
    for (const Group& group : plan) {
        for (const Unit& unit : group.units)
            wanted.insert(unit.id);
    }
    std::erase_if(fUnits, [&](MIDIUniqueID unit) {
        const bool isLeft = !wanted.contains(unit);
        if (isLeft)
            fSequencer.Forget(unit);
        return isLeft;
    });
}

} // namespace SurfacePorts
