#pragma once

#include "app/Handler.h"

#include <vector>

/// Keeps every command that a control sends.
class RecordingHandler final : public Handler {
public:
    void Handle(unsigned int command) override { commands.push_back(command); }

    std::vector<unsigned int> commands;
};
