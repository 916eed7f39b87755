#pragma once

// Immutable strings of UTF-16 units. What is created is owned by the caller and ends in CFRelease.

#include <CoreFoundation/CFBase.h>

CF_EXTERN_C_BEGIN

typedef const struct CFString* CFStringRef;
typedef UInt32 CFStringEncoding;
typedef CFOptionFlags CFStringCompareFlags;

/// The byte encodings that strings are made from and written in.
enum { kCFStringEncodingASCII = 0x0600, kCFStringEncodingUTF8 = 0x08000100 };

/// Search from the end; search only at the beginning of the range, or only at its end where the
/// search runs backwards.
enum { kCFCompareBackwards = 4, kCFCompareAnchored = 8 };

/// A string of any `count` units, ill-formed ones included. Null when count is negative.
CFStringRef CFStringCreateWithCharacters(CFAllocatorRef allocator, const UniChar* units,
                                         CFIndex count);

/// A string from `count` bytes. Null when they are ill-formed in the encoding, which for UTF-8
/// includes encoded surrogates, or when the encoding is not offered. An external representation
/// may begin with a byte order mark, which does not become content.
CFStringRef CFStringCreateWithBytes(CFAllocatorRef allocator, const UInt8* bytes, CFIndex count,
                                    CFStringEncoding encoding, Boolean isExternalRepresentation);

/// As above, from the bytes before the first 0 byte.
CFStringRef CFStringCreateWithCString(CFAllocatorRef allocator, const char* text,
                                      CFStringEncoding encoding);

/// The length in UTF-16 units.
CFIndex CFStringGetLength(CFStringRef string);

/// Copies the units of the range, which lies within the string, into a buffer with room for them.
void CFStringGetCharacters(CFStringRef string, CFRange range, UniChar* buffer);

/// Writes the units of the range as bytes, whole characters only, as many as fit into `capacity`
/// bytes, without a closing 0. Answers how many units were converted; `usedBytes`, where not null,
/// receives the number of bytes. A null buffer counts without a limit. A unit that the encoding
/// cannot express becomes `lossByte`; with a `lossByte` of 0 the conversion ends before it.
CFIndex CFStringGetBytes(CFStringRef string, CFRange range, CFStringEncoding encoding,
                         UInt8 lossByte, Boolean isExternalRepresentation, UInt8* buffer,
                         CFIndex capacity, CFIndex* usedBytes);

/// Writes the whole string and a closing 0 byte into `capacity` bytes. False, with nothing to rely
/// on in the buffer, when it does not fit or the encoding cannot express it.
Boolean CFStringGetCString(CFStringRef string, char* buffer, CFIndex capacity,
                           CFStringEncoding encoding);

/// The string of a file name or path. A byte that is no UTF-8 becomes a unit 0xDC80 to 0xDCFF.
CFStringRef CFStringCreateWithFileSystemRepresentation(CFAllocatorRef allocator, const char* path);

/// Writes the bytes of the file name or path that the string stands for, and a closing 0, into
/// `capacity` bytes. False when they do not fit or the string has a 0 unit in it.
Boolean CFStringGetFileSystemRepresentation(CFStringRef string, char* buffer, CFIndex capacity);

/// The encoding of the system's own byte strings: UTF-8.
CFStringEncoding CFStringGetSystemEncoding(void);

/// Looks for `wanted` among the units of the range, which lies within the string: unit for unit,
/// with no regard to case or composition. `result`, where not null, receives the place found. An
/// empty `wanted` is never found.
Boolean CFStringFindWithOptions(CFStringRef string, CFStringRef wanted, CFRange range,
                                CFStringCompareFlags options, CFRange* result);

/// The string constant of a UTF-8 text: made at its first use, one object a text, never freed.
CFStringRef CFStringMakeConstantString(const char* text);
#define CFSTR(text) CFStringMakeConstantString("" text "")

CF_EXTERN_C_END
