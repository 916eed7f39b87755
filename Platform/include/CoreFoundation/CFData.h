#pragma once

// Immutable blocks of bytes. What is created is owned by the caller and ends in CFRelease.

#include <CoreFoundation/CFBase.h>

CF_EXTERN_C_BEGIN

typedef const struct CFData* CFDataRef;

/// A copy of `count` bytes. Null when count is negative.
CFDataRef CFDataCreate(CFAllocatorRef allocator, const UInt8* bytes, CFIndex count);

CFIndex CFDataGetLength(CFDataRef data);

/// The bytes, which live as long as the object. Of an empty object the pointer may be null.
const UInt8* CFDataGetBytePtr(CFDataRef data);

CF_EXTERN_C_END
