#pragma once

#include <CoreFoundation/CoreFoundation.h>

// What the user is told about the database of MIDI objects. Each waits until the alert is closed.

/// Why the database can't be used, and what to do about it. Nothing where it can be used.
void TellWhyDatabaseIsRefused();

/// That none of the settings was stored, and why.
void TellThatNothingWasStored(OSStatus why);
