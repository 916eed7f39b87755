#pragma once

#include <algorithm>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

/// A map for few entries: (key, value) pairs in one vector, sorted by key and searched by halving
/// it. Inserting moves the entries behind and makes iterators invalid.
template <typename Key, typename Value, typename Less = std::less<Key>,
          typename Allocator = std::allocator<std::pair<Key, Value>>>
class sorted_vector_map {
public:
    using value_type = std::pair<Key, Value>;
    using Entries = std::vector<value_type, Allocator>;
    using iterator = typename Entries::iterator;
    using const_iterator = typename Entries::const_iterator;

    sorted_vector_map() = default;
    /// Takes over entries that are sorted by their keys, each of which is there once.
    explicit sorted_vector_map(Entries sorted)
        : fEntries(std::move(sorted)) {}

    iterator begin() { return fEntries.begin(); }
    iterator end() { return fEntries.end(); }
    const_iterator begin() const { return fEntries.begin(); }
    const_iterator end() const { return fEntries.end(); }
    std::size_t size() const { return fEntries.size(); }
    bool empty() const { return fEntries.empty(); }

    /// The first entry whose key is not below `key`: where it stands or would have to.
    iterator lower_bound(const Key& key) { return std::lower_bound(begin(), end(), key, IsBefore); }

    /// The entry of the key, or end().
    iterator find(const Key& key) {
        const auto place = lower_bound(key);
        return HoldsAt(place, key) ? place : end();
    }

    /// Likewise, of a map that cannot be changed.
    const_iterator find(const Key& key) const {
        const auto place = std::lower_bound(begin(), end(), key, IsBefore);
        return HoldsAt(place, key) ? place : end();
    }

    /// Whether `place`, got from lower_bound of the key, is the key's own entry.
    bool HoldsAt(const_iterator place, const Key& key) const {
        return place != end() && !Less()(key, place->first);
    }

    /// Inserts an entry at the place that lower_bound gave for its key, which must be new.
    iterator insert(const_iterator place, value_type entry) {
        return fEntries.insert(place, std::move(entry));
    }

    /// Inserts an entry unless its key is there; answers the key's entry and whether it is new.
    std::pair<iterator, bool> insert(value_type entry) {
        const auto place = lower_bound(entry.first);
        if (HoldsAt(place, entry.first))
            return {place, false};
        return {insert(place, std::move(entry)), true};
    }

    /// The value of the key, made when it is not there.
    Value& operator[](const Key& key) { return insert({key, Value()}).first->second; }

private:
    static bool IsBefore(const value_type& entry, const Key& key) {
        return Less()(entry.first, key);
    }

    Entries fEntries;
};
