#pragma once

#include "tools/surface-ports/Sequencer.h"

#include <map>
#include <set>

namespace SurfacePorts {

/// Brings the sequencer to a plan, again and again, and changes no more than the plan did: what
/// mixers are connected to stays open.
class PortKeeper {
public:
    explicit PortKeeper(Sequencer& sequencer)
        : fSequencer(sequencer) {}

    /// Answers what a person should know: a sentence for each thing that could not be had.
    std::set<std::string> Keep(const Plan& plan);

    /// Whether a unit could not be had, which nothing will tell of when it is free.
    bool IsWaiting() const { return fIsWaiting; }

private:
    void CloseGroupsWithout(const Plan& plan);
    void KeepGroup(const Group& group);
    void KeepUnit(const Unit& unit);
    void KeepLink(const Unit& unit, Direction direction, const std::optional<Address>& address);
    void ForgetUnitsWithout(const Plan& plan);

    Sequencer& fSequencer;
    std::map<SInt32, std::vector<std::string>> fPorts; ///< the open groups: names of their ports
    std::set<MIDIUniqueID> fUnits;
    std::set<std::string> fComplaints;
    bool fIsWaiting = false;
};

} // namespace SurfacePorts
