#include "XML/XMLName.h"

namespace Kestrin {

const char* ErrType() {
    return "Kestrin";
}

Name::Name(const char* local)
    : fLocal(local) {}

Name::Name(const char* local, const char* nameSpace)
    : fNamespace(nameSpace != nullptr ? nameSpace : "")
    , fLocal(local) {}

Name::Name(const UString& local, const UString& nameSpace)
    : fNamespace(nameSpace.utf8_str())
    , fLocal(local.utf8_str()) {}

bool operator==(const Name& a, const Name& b) {
    return a.Local() == b.Local() && a.Namespace() == b.Namespace();
}

} // namespace Kestrin
