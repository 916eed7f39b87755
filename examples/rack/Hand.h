#pragma once

#include "examples/rack/Unit.h"

#include <string>
#include <vector>

/// Does what one line of the standard input says:
///
///   UNIT touch STRIP | UNIT release STRIP | UNIT move STRIP POSITION | UNIT press NOTE |
///   UNIT send BYTES | UNIT show
///
/// UNIT counts from 1, STRIP from 1 (9 is the master fader), POSITION is 0 to 16383, NOTE two
/// hexadecimal digits ("5E" is Play), BYTES one message of such digits. Answers what to print,
/// lines for "show" or a sentence on what the line lacks.
std::string DoByHand(std::vector<Unit>& units, const std::string& line);
