#pragma once

#include "Strings/UString.h"

#include <string>
#include <vector>

namespace Kestrin {

/// The error type that failures of reading and writing XML are reported with: "Kestrin".
const char* ErrType();

/// The name of an element or attribute: a local part and the namespace it belongs to, both UTF-8.
/// A local part that XML does not allow is accepted; it fails where it is written.
class Name {
public:
    explicit Name(const char* local);

    /// A null `nameSpace` means none.
    Name(const char* local, const char* nameSpace);

    Name(const UString& local, const UString& nameSpace);

    /// Empty for a name without a namespace.
    const std::string& Namespace() const { return fNamespace; }

    const std::string& Local() const { return fLocal; }

private:
    std::string fNamespace;
    std::string fLocal;
};

/// True when both parts are equal byte for byte.
bool operator==(const Name& a, const Name& b);

/// One attribute of an element; `name` is the name as it is written, with its prefix.
struct AttributePair {
    UString name;
    UString value;
};

using AttributeList = std::vector<AttributePair>;

} // namespace Kestrin
