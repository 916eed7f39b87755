#pragma once

// The types that the platform's C interfaces share, and what holds for every CoreFoundation object.
// Like all headers of the platform's C interfaces it is plain C.

#include <stdint.h>

// What these two enclose has C names and is offered to those who link the library.
#ifdef __cplusplus
#define CF_EXTERN_C_BEGIN                                                                          \
    extern "C" {                                                                                   \
    _Pragma("GCC visibility push(default)")
#define CF_EXTERN_C_END                                                                            \
    _Pragma("GCC visibility pop")                                                                  \
    }
#else
#define CF_EXTERN_C_BEGIN
#define CF_EXTERN_C_END
#endif

CF_EXTERN_C_BEGIN

typedef uint8_t UInt8;
typedef uint16_t UInt16;
typedef int16_t SInt16;
typedef uint32_t UInt32;
typedef int32_t SInt32;
typedef unsigned char Boolean;
typedef UInt16 UniChar;
typedef SInt32 OSStatus;
typedef SInt16 OSErr;

/// Success, of a call that answers with a status.
static const OSStatus noErr = 0;
/// A parameter that the call cannot work with.
static const OSStatus paramErr = -50;

/// A file name of up to 255 UTF-16 units; those past `length` mean nothing.
typedef struct HFSUniStr255 {
    UInt16 length;
    UniChar unicode[255];
} HFSUniStr255;

typedef const void* CFTypeRef;
typedef long CFIndex;
typedef unsigned long CFOptionFlags;

typedef struct CFRange {
    CFIndex location;
    CFIndex length;
} CFRange;

static inline CFRange CFRangeMake(CFIndex location, CFIndex length) {
    CFRange range = {location, length};
    return range;
}

/// Where objects are made. There is one allocator only, the default one.
typedef const struct CFAllocator* CFAllocatorRef;
extern const CFAllocatorRef kCFAllocatorDefault;

/// Adds a reference to a CoreFoundation object and returns it. Null is not allowed.
CFTypeRef CFRetain(CFTypeRef object);

/// Gives a reference back; the last one frees the object. Null is not allowed.
void CFRelease(CFTypeRef object);

/// Whether both are of one kind and of equal content. Null is not allowed.
Boolean CFEqual(CFTypeRef first, CFTypeRef second);

CF_EXTERN_C_END
