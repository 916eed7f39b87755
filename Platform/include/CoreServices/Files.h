#pragma once

// References to files and what the file system tells about them.

#include <CoreFoundation/CoreFoundation.h>
#include <CoreServices/TextEncoding.h>

#ifdef __cplusplus
extern "C" {
#endif

/// A file or folder that existed when the reference was made: its folder and its name there. So it
/// goes on to mean whatever stands under that name, also after the file was replaced, and nothing
/// once it was deleted or renamed. The content is the functions' own.
typedef struct FSRef {
    /// Absolute, without symbolic links.
    char folder[4096];
    /// Empty for the root of the file system.
    char name[256];
} FSRef;

typedef UInt32 FSCatalogInfoBitmap;
typedef unsigned long UniCharCount;

/// The parent folder's number is asked for.
enum { kFSCatInfoParentDirID = 0x00000008 };

/// The number of what is above the root of the file system, and the lowest that a folder has.
enum { fsRtParID = 1, fsRtDirID = 2 };

static const TextEncoding kTextEncodingUnknown = 0xFFFF;

/// A name that no file can have, or a path too long to be one.
static const OSErr bdNamErr = -37;
/// There is no such file.
static const OSErr fnfErr = -43;

typedef struct FSCatalogInfo {
    UInt32 parentDirID;
} FSCatalogInfo;

/// Makes a reference of an existing path, relative ones from the current folder. `isDirectory` may
/// be null.
OSStatus FSPathMakeRef(const UInt8* path, FSRef* ref, Boolean* isDirectory);

/// What there is to know about an existing item; each result may be null. `info` receives what
/// `which` asks for, `name` the leaf name, `parent` the folder. `spec` is not offered: null.
OSErr FSGetCatalogInfo(const FSRef* ref, FSCatalogInfoBitmap which, FSCatalogInfo* info,
                       HFSUniStr255* name, struct FSSpec* spec, FSRef* parent);

/// Makes a reference of the name in the folder. It must exist; `ref` may be null. The hint has no
/// meaning here.
OSErr FSMakeFSRefUnicode(const FSRef* folder, UniCharCount length, const UniChar* name,
                         TextEncoding hint, FSRef* ref);

/// True, and the reference, when the URL's file exists.
Boolean CFURLGetFSRef(CFURLRef url, FSRef* ref);

/// The URL, owned by the caller, of a reference, whether or not its file still exists.
CFURLRef CFURLCreateFromFSRef(CFAllocatorRef allocator, const FSRef* ref);

#ifdef __cplusplus
}
#endif
