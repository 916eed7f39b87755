#include "XML/ItemNames.h"

namespace Kestrin {

[[gnu::init_priority(101)]] const UString kRootNameUString = "resource_list"_u;
[[gnu::init_priority(101)]] const UString kItemNameAttributeUString = "name"_u;
[[gnu::init_priority(101)]] const UString kValueAttributeUString = "value"_u;
[[gnu::init_priority(101)]] const UString kSizeAttributeUString = "size"_u;
[[gnu::init_priority(101)]] const UString kLanguageAttributeUString = "lang"_u;
[[gnu::init_priority(101)]] const UString kPlatformAttributeUString = "platform"_u;
[[gnu::init_priority(101)]] const UString kEncodedBlankUString = "XML_SPACE_ENCODE"_u;

} // namespace Kestrin
