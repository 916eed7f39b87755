#pragma once

#include "Strings/UString.h"

#include <string_view>

namespace Kestrin {

// The vocabulary of the items' XML form.

// What nearly every element has is compared as it stands in the document.
constexpr std::string_view kItemNameAttribute = "name";
constexpr std::string_view kValueAttribute = "value";
constexpr std::string_view kSizeAttribute = "size";

extern const UString kRootNameUString;
extern const UString kItemNameAttributeUString;
extern const UString kValueAttributeUString;
extern const UString kSizeAttributeUString;
extern const UString kLanguageAttributeUString;
extern const UString kPlatformAttributeUString;

} // namespace Kestrin
