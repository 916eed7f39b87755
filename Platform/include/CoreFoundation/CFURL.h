#pragma once

// URLs of files. A path's bytes are kept as they are; as text, a byte that is no UTF-8 becomes a
// unit 0xDC80 to 0xDCFF and back. What is created or copied is owned by the caller and ends in
// CFRelease.

#include <CoreFoundation/CFBase.h>
#include <CoreFoundation/CFString.h>

CF_EXTERN_C_BEGIN

typedef const struct CFURL* CFURLRef;

/// The only style of path there is here: with slashes.
enum { kCFURLPOSIXPathStyle = 0 };
typedef CFIndex CFURLPathStyle;

/// The URL of a path of `count` bytes, of a folder or of a file; a relative one starts from the
/// current folder. Null for the empty path and for one with a 0 byte.
CFURLRef CFURLCreateFromFileSystemRepresentation(CFAllocatorRef allocator, const UInt8* path,
                                                 CFIndex count, Boolean isDirectory);

/// The URL with one more component, which need not exist. Null for an empty component and for one
/// that is no name: with a slash or a 0 unit in it.
CFURLRef CFURLCreateCopyAppendingPathComponent(CFAllocatorRef allocator, CFURLRef url,
                                               CFStringRef component, Boolean isDirectory);

/// The absolute path as text. Null for any other style.
CFStringRef CFURLCopyFileSystemPath(CFURLRef url, CFURLPathStyle style);

/// Writes the path's bytes and a closing 0 into `capacity` bytes. False when they do not fit. The
/// path is absolute whatever `resolveAgainstBase` says.
Boolean CFURLGetFileSystemRepresentation(CFURLRef url, Boolean resolveAgainstBase, UInt8* buffer,
                                         CFIndex capacity);

CF_EXTERN_C_END
