#pragma once

#include "Strings/UString.h"

#include <CoreFoundation/CFHolder.h>
#include <CoreFoundation/CFString.h>

// A UString and the platform's string object, unit for unit.

CFHolder<CFStringRef> UStringToCF(const UString& text);

/// Null gives an empty text.
UString CFToUString(CFStringRef string);

CFHolder<CFStringRef> HFSToCFString(const HFSUniStr255& name);
