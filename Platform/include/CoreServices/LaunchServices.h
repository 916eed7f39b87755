#pragma once

// Opening documents with the programs that the user has chosen for them.

#include <CoreFoundation/CoreFoundation.h>

#ifdef __cplusplus
extern "C" {
#endif

/// No program that opens documents was found.
static const OSStatus kLSApplicationNotFoundErr = -10814;

/// Hands an existing document to the desktop's default application through xdg-open or, where there
/// is none, gio, and returns at once. Success means that the opener was started; what becomes of
/// the document is shown by the desktop. `launched`, which may be null, receives null: which
/// application it is remains the desktop's business.
OSStatus LSOpenCFURLRef(CFURLRef document, CFURLRef* launched);

#ifdef __cplusplus
}
#endif
