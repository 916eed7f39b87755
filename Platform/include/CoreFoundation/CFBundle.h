#pragma once

// The folder of a program and the resources that come with it: in the folder's Resources/ and in
// ../share/sorvex-mackie-setup/ from it.

#include <CoreFoundation/CFBase.h>
#include <CoreFoundation/CFString.h>
#include <CoreFoundation/CFURL.h>

CF_EXTERN_C_BEGIN

typedef const struct CFBundle* CFBundleRef;

/// The bundle of the folder that the running program stands in. Not owned by the caller.
CFBundleRef CFBundleGetMainBundle(void);

/// The URL, owned by the caller, of the resource of that name and type (its extension; null or
/// empty for none), or null. `subFolder`, where not null, is the folder among the resources to look
/// in.
///
/// A copy in <language>.lproj/ is preferred, by the user's languages: LANGUAGE's list where it is
/// set, else the first of LC_ALL, LC_MESSAGES and LANG that is set. fr_CH.UTF-8 tries fr_CH, then
/// fr. English is the plain copy.
CFURLRef CFBundleCopyResourceURL(CFBundleRef bundle, CFStringRef name, CFStringRef type,
                                 CFStringRef subFolder);

CF_EXTERN_C_END
