#include "XML/ItemNames.h"

namespace Kestrin {

const UString kRootNameUString("resource_list", UString::kASCII);
const UString kItemNameAttributeUString("name", UString::kASCII);
const UString kValueAttributeUString("value", UString::kASCII);
const UString kSizeAttributeUString("size", UString::kASCII);
const UString kLanguageAttributeUString("lang", UString::kASCII);
const UString kPlatformAttributeUString("platform", UString::kASCII);

} // namespace Kestrin
