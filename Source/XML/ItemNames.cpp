#include "XML/ItemNames.h"

namespace Kestrin {

const UString kRootNameUString("resource_list", UString::kASCII);
const UString kItemNameAttributeUString(std::string(kItemNameAttribute), UString::kASCII);
const UString kValueAttributeUString(std::string(kValueAttribute), UString::kASCII);
const UString kSizeAttributeUString(std::string(kSizeAttribute), UString::kASCII);
const UString kLanguageAttributeUString("lang", UString::kASCII);
const UString kPlatformAttributeUString("platform", UString::kASCII);

} // namespace Kestrin
