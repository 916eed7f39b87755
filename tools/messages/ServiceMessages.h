#pragma once

#include <CoreMIDI/CoreMIDI.h>

#include <string>

/// A sentence of the MIDI service in the user's language; releases it. Empty for null. The service
/// speaks English; the catalogue has its sentences with the database's path, or its folder, as %1
/// and what stands in parentheses as %2, which stays as it is.
std::string ServiceMessage(CFStringRef owned);

/// The file that the MIDI service uses.
std::string DatabasePath();
