#pragma once

#include <string>
#include <vector>

/// A port of the sequencer.
struct SequencerPort {
    int client = -1;
    int port = -1;
};

/// The ports of the client of this name that others may connect to, by number. Waits, for at most a
/// minute, until there are `count`; throws a sentence (std::runtime_error) where there never are.
std::vector<SequencerPort> AwaitPorts(const std::string& client, std::size_t count);

/// Connects the two, or undoes it, in both directions.
void Connect(const SequencerPort& one, const SequencerPort& other);
void Disconnect(const SequencerPort& one, const SequencerPort& other);
