#include "Platform/CoreMIDI/Live/DeviceMatching.h"

#include <algorithm>
#include <map>
#include <string>

namespace KestrinMIDI {

namespace {

using Records = std::vector<HardwareRecord>;
using Key = std::vector<std::string>;
using Units = std::vector<std::size_t>;

enum class Among { Any, OneOfEach };

/// A way to tell units: those of equal keys may be the same, among any number of them or only where
/// one known and one live unit are left.
struct Step {
    Among among;
    Key (*keyOf)(const HardwareRecord& unit);
};

constexpr Step kSteps[] = {
    {Among::Any,
     [](const HardwareRecord& unit) {
         return Key{unit.kind, unit.serial, unit.manufacturer, unit.name, unit.place};
     }},
    {Among::OneOfEach,
     [](const HardwareRecord& unit) {
         return Key{unit.kind, unit.serial, unit.manufacturer, unit.name};
     }},
    {Among::Any,
     [](const HardwareRecord& unit) {
         return Key{unit.kind, unit.serial, unit.place};
     }},
    {Among::OneOfEach,
     [](const HardwareRecord& unit) {
         return Key{unit.kind, unit.serial};
     }},
};

/// Firmware changes one of the two texts, hardly ever both.
bool AgreeInText(const HardwareRecord& one, const HardwareRecord& other) {
    return one.name == other.name ||
           (!one.manufacturer.empty() && one.manufacturer == other.manufacturer);
}

class Matcher {
public:
    Matcher(const Records& known, const Records& live)
        : fKnown(known)
        , fLive(live)
        , fMatches(live.size())
        , fIsTaken(known.size()) {}

    void Take(const Step& step) {
        for (auto& [key, group] : GroupBy(step.keyOf)) {
            if (step.among == Among::Any || (group.known.size() == 1 && group.live.size() == 1))
                Match(group);
        }
    }

    const std::vector<std::optional<std::size_t>>& Matches() const { return fMatches; }

private:
    struct Group {
        Units known;
        Units live;
    };

    /// What is not yet matched.
    std::map<Key, Group> GroupBy(Key (*keyOf)(const HardwareRecord&)) const {
        std::map<Key, Group> groups;
        for (std::size_t unit = 0; unit < fLive.size(); ++unit) {
            if (!fMatches[unit])
                groups[keyOf(fLive[unit])].live.push_back(unit);
        }
        for (std::size_t unit = 0; unit < fKnown.size(); ++unit) {
            if (!fIsTaken[unit])
                groups[keyOf(fKnown[unit])].known.push_back(unit);
        }
        return groups;
    }

    /// Several that are equal in all, which a program's ports of one name are, pair up in order.
    void Match(Group& group) {
        for (const std::size_t live : group.live) {
            const auto found =
                std::find_if(group.known.begin(), group.known.end(), [&](std::size_t known) {
                    return AgreeInText(fKnown[known], fLive[live]);
                });
            if (found == group.known.end())
                continue;
            fMatches[live] = *found;
            fIsTaken[*found] = true;
            group.known.erase(found);
        }
    }

    const Records& fKnown;
    const Records& fLive;
    std::vector<std::optional<std::size_t>> fMatches;
    std::vector<bool> fIsTaken;
};

} // namespace

std::vector<std::optional<std::size_t>> MatchUnits(const Records& known, const Records& live) {
    Matcher matcher(known, live);
    for (const Step& step : kSteps)
        matcher.Take(step);
    return matcher.Matches();
}

} // namespace KestrinMIDI
