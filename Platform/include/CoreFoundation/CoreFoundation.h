#pragma once

// The part of CoreFoundation that the system uses, with the meaning of its public documentation.
// Plain C, so that programs in either language can include it.

#include <CoreFoundation/CFBase.h>
#include <CoreFoundation/CFBundle.h>
#include <CoreFoundation/CFData.h>
#include <CoreFoundation/CFString.h>
#include <CoreFoundation/CFURL.h>
