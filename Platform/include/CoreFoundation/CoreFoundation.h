#pragma once

// The part of CoreFoundation that the system uses, with the meaning of its public documentation.
// Plain C, so that programs in either language can include it.

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef unsigned char Boolean;
typedef int32_t SInt32;
typedef uint32_t UInt32;
typedef SInt32 OSStatus;

typedef const void* CFTypeRef;
typedef const struct __CFString* CFStringRef;
typedef const struct __CFData* CFDataRef;

/// Adds a reference to a CoreFoundation object and returns it. Null is not allowed.
CFTypeRef CFRetain(CFTypeRef object);

/// Gives a reference back; the last one frees the object. Null is not allowed.
void CFRelease(CFTypeRef object);

#ifdef __cplusplus
}
#endif
