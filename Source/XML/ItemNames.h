#pragma once

#include "Strings/UString.h"

namespace Kestrin {

// The words of the items' XML form; the elements are named by the items' types. They are made
// before the rest of the program, which may look a text up while it is being made itself.

extern const UString kRootNameUString;
extern const UString kItemNameAttributeUString;
extern const UString kValueAttributeUString;
extern const UString kSizeAttributeUString;
extern const UString kLanguageAttributeUString;
extern const UString kPlatformAttributeUString;
/// Stands for a text of one blank, which reading would otherwise drop.
extern const UString kEncodedBlankUString;

} // namespace Kestrin
