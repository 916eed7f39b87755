#pragma once

#include <cstddef>
#include <string_view>

namespace Kestrin {

/// Watches a document pass for a start tag of so many attributes that libxml2, which compares each
/// with all before it, would not end.
class StartTagGuard {
public:
    /// Takes the next piece of the document. False when there are too many attributes in its last
    /// tag.
    bool Takes(std::string_view piece);

private:
    bool fIsInTag = false;
    /// The quotation mark of the value that is open, or 0.
    char fQuote = 0;
    std::size_t fValues = 0;
};

} // namespace Kestrin
