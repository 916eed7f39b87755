#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <utility>
#include <vector>

namespace KestrinMIDI {

/// Finds values by 32-bit keys other than 0, in one table without nodes: a look-up meets one or two
/// lines of memory. The values are pointers that are not owned.
template <typename Value>
class ObjectIndex {
public:
    Value* Find(std::uint32_t key) const {
        for (std::size_t slot = SlotOf(key);; slot = Next(slot)) {
            if (fSlots[slot].first == key)
                return fSlots[slot].second;
            if (fSlots[slot].first == 0)
                return nullptr;
        }
    }

    /// The key is in use by no other value.
    void Insert(std::uint32_t key, Value* value) {
        if (2 * (fCount + 1) > fSlots.size())
            Grow();
        Place(key, value);
        ++fCount;
    }

    void Erase(std::uint32_t key) {
        std::size_t hole = SlotOf(key);
        while (fSlots[hole].first != key) {
            if (fSlots[hole].first == 0)
                return;
            hole = Next(hole);
        }
        CloseHole(hole);
        --fCount;
    }

private:
    using Slot = std::pair<std::uint32_t, Value*>;

    std::size_t SlotOf(std::uint32_t key) const {
        return static_cast<std::uint32_t>(key * fMultiplier) >> fShift;
    }
    std::size_t Next(std::size_t slot) const { return (slot + 1) & (fSlots.size() - 1); }

    void Place(std::uint32_t key, Value* value) {
        std::size_t slot = SlotOf(key);
        while (fSlots[slot].first != 0)
            slot = Next(slot);
        fSlots[slot] = {key, value};
    }

    void Grow() {
        std::vector<Slot> old(fSlots.size() * 2);
        old.swap(fSlots);
        --fShift;
        for (const auto& [key, value] : old) {
            if (key != 0)
                Place(key, value);
        }
    }

    /// Moves up what a search would no longer reach past the hole.
    void CloseHole(std::size_t hole) {
        const std::size_t mask = fSlots.size() - 1;
        for (std::size_t slot = Next(hole); fSlots[slot].first != 0; slot = Next(slot)) {
            const std::size_t wanted = SlotOf(fSlots[slot].first);
            if (((slot - wanted) & mask) >= ((slot - hole) & mask)) {
                fSlots[hole] = fSlots[slot];
                hole = slot;
            }
        }
        fSlots[hole] = {};
    }

    static constexpr int kFirstBits = 6;

    std::vector<Slot> fSlots{std::size_t{1} << kFirstBits};
    std::size_t fCount = 0;
    int fShift = 32 - kFirstBits;
    // Any odd number scatters the keys; a random one keeps a file from being made to crowd them.
    std::uint32_t fMultiplier = std::random_device()() | 1;
};

} // namespace KestrinMIDI
