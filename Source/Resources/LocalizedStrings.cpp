#include "Resources/LocalizedStrings.h"

#include "XML/XMLSerializable.h"

namespace Kestrin {

namespace {

/// Null when there is no table.
const ContainerItem* Strings() {
    static const boost::shared_ptr<ContainerItem> gStrings =
        ReadSerializedResourceFile("LocalizableStrings"_u, "xml"_u);
    return gStrings.get();
}

} // namespace

UString LookupString(const char* key) {
    return LookupString(UString(key, UString::kASCII));
}

UString LookupString(const UString& key) {
    const ContainerItem* strings = Strings();
    const auto item = strings != nullptr ? strings->GetUStringItem(key) : nullptr;
    return item != nullptr ? item->GetValue() : key;
}

} // namespace Kestrin
