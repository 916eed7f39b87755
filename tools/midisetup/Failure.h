#pragma once

#include <stdexcept>
#include <string>

namespace MidiSetup {

/// What the program ends with.
enum ExitCode {
    kExitDone = 0,
    kExitFailed = 1,   ///< what was asked for could not be done; of doctor: problems in the studio
    kExitUsage = 2,    ///< the command line was not understood
    kExitDatabase = 3, ///< of doctor: the database cannot be used
    kExitSequencer = 4 ///< of doctor: all is well but for the sequencer
};

/// Ends a command with a message for the user, which is printed on standard error.
class Failure : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The same for a command line that was not understood.
class UsageFailure : public Failure {
public:
    using Failure::Failure;
};

} // namespace MidiSetup
