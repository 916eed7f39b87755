#pragma once

// The part of CoreFoundation that the system uses, with the meaning of its public documentation.

#include <cstdint>

using CFTypeRef = const void*;

/// Adds a reference to a CoreFoundation object and returns it. Null is not allowed.
CFTypeRef CFRetain(CFTypeRef object);

/// Gives a reference back; the last one frees the object. Null is not allowed.
void CFRelease(CFTypeRef object);
