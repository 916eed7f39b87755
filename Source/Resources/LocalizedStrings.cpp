#include "Resources/LocalizedStrings.h"

#include "XML/XMLSerializable.h"

#include <cstring>

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
    // The key's units stay in place from call to call, which saves most of a look-up's time.
    thread_local UString units;
    units.assign(reinterpret_cast<const unsigned char*>(key), std::strlen(key), UString::kASCII);
    return LookupString(units);
}

UString LookupString(const UString& key) {
    const ContainerItem* strings = Strings();
    const UString* text = strings != nullptr ? strings->FindUString(key) : nullptr;
    return text != nullptr ? *text : key;
}

} // namespace Kestrin
