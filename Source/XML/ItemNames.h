#pragma once

#include "Strings/UString.h"

namespace Kestrin {

// The vocabulary of the items' XML form.
extern const UString kRootNameUString;
extern const UString kItemNameAttributeUString;
extern const UString kValueAttributeUString;
extern const UString kSizeAttributeUString;
extern const UString kLanguageAttributeUString;
extern const UString kPlatformAttributeUString;

} // namespace Kestrin
