#pragma once

#include "Strings/UString.h"

namespace Kestrin {

/// The localized text of a key, or the key itself when the application's strings have none. The key
/// is the English text, in ASCII, or a short name ("MBOK"); it is matched unit for unit.
///
/// The strings are the resource "LocalizableStrings" of type "xml", read at the first call and
/// never again. A table that cannot be read is a failure: it is reported and -50 is thrown, at
/// every call until it can be. One that is missing answers every key with the key.
UString LookupString(const char* key);
UString LookupString(const UString& key);

} // namespace Kestrin
