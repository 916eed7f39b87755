#pragma once

#include "Strings/UString.h"
#include "UI/TextStyle.h"

namespace Kestrin {

/// The name of a typeface: the localized text of "Font1" to "Font4", looked up once at its first
/// use, or a fixed one.
const UString& FontName(FontID font);

} // namespace Kestrin
