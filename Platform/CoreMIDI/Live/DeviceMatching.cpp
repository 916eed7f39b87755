#include "Platform/CoreMIDI/Live/DeviceMatching.h"

#include <map>
#include <string>
#include <utility>

namespace KestrinMIDI {

namespace {

using Units = std::vector<std::size_t>;
using Matches = std::vector<std::optional<std::size_t>>;

struct Alike {
    Units known;
    Units live;
};

std::map<std::pair<std::string, std::string>, Alike>
GroupAlike(const std::vector<HardwareRecord>& known, const std::vector<HardwareRecord>& live) {
    std::map<std::pair<std::string, std::string>, Alike> groups;
    for (std::size_t i = 0; i < live.size(); ++i)
        groups[{live[i].kind, live[i].serial}].live.push_back(i);
    for (std::size_t i = 0; i < known.size(); ++i) {
        const auto group = groups.find({known[i].kind, known[i].serial});
        if (group != groups.end())
            group->second.known.push_back(i);
    }
    return groups;
}

/// Equal places, which a program's endpoints of equal names have, pair up in their order.
void MatchByPlace(const Alike& alike, const std::vector<HardwareRecord>& known,
                  const std::vector<HardwareRecord>& live, Matches& matches) {
    std::multimap<std::string, std::size_t> places;
    for (const std::size_t unit : alike.known)
        places.emplace(known[unit].place, unit);
    for (const std::size_t unit : alike.live) {
        const auto place = places.lower_bound(live[unit].place);
        if (place == places.end() || place->first != live[unit].place)
            continue;
        matches[unit] = place->second;
        places.erase(place);
    }
}

} // namespace

std::vector<std::optional<std::size_t>> MatchUnits(const std::vector<HardwareRecord>& known,
                                                   const std::vector<HardwareRecord>& live) {
    Matches matches(live.size());
    for (const auto& [identity, alike] : GroupAlike(known, live)) {
        if (alike.known.size() == 1 && alike.live.size() == 1)
            matches[alike.live.front()] = alike.known.front();
        else
            MatchByPlace(alike, known, live, matches);
    }
    return matches;
}

} // namespace KestrinMIDI
