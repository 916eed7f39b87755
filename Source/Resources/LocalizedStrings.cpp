#include "Resources/LocalizedStrings.h"

#include "XML/XMLSerializable.h"

namespace Kestrin {

namespace {

/// Null when there is no table.
const ContainerItem* Strings() {
    static const boost::shared_ptr<ContainerItem> gStrings = ReadSerializedResourceFile(
        UString("LocalizableStrings", UString::kASCII), UString("xml", UString::kASCII));
    return gStrings.get();
}

} // namespace

UString LookupString(const char* key) {
    return LookupString(UString(key, UString::kASCII));
}

UString LookupString(const UString& key) {
    const ContainerItem* strings = Strings();
    if (strings == nullptr)
        return key;
    const boost::shared_ptr<UStringItem> item = strings->GetUStringItem(key);
    return item != nullptr ? item->GetValue() : key;
}

} // namespace Kestrin
