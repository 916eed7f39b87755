#pragma once

#include "XML/XMLName.h"

namespace Kestrin {

/// An attribute list in one allocation, where a list has one more for each longer text: every item
/// of a file keeps one for life.
class PackedAttributes {
public:
    PackedAttributes() = default;
    /// `name` is the item's, which is not kept twice.
    PackedAttributes(const AttributeList& attributes, const UString& name);

    AttributeList Unpacked(const UString& name) const;

private:
    /// Of each pair its name and its value, each a length in two units in front of its own.
    UTF16String fTexts;
};

} // namespace Kestrin
