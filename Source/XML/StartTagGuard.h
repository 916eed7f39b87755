#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Kestrin {

/// Watches a document pass for start tags of so many attributes that libxml2, which compares each
/// with all before it, would not end; it does so with those that a DTD declares, too, at each tag.
class StartTagGuard {
public:
    /// Takes the next piece of the document. False when there are too many attributes in its last
    /// tag. Where they cannot be counted, in a DTD and in an encoding that is not like ASCII, it is
    /// false when too much comes before the next node.
    bool Takes(std::string_view piece);

    /// Takes note of a node that was read, of a document whose DTD declares so many attributes.
    /// False when the nodes so far took too many comparisons.
    bool TakesNode(std::size_t declaredAttributes);

private:
    bool CountsIn(std::string_view piece);
    std::size_t MostBeforeNode() const;

    /// The beginning of the document, in front of its first node.
    std::string fStart;
    bool fHasNode = false;
    bool fIsBehindDTD = false;
    bool fIsLikeASCII = true;
    std::size_t fBytesBeforeNode = 0;
    std::size_t fComparisons = 0;

    // The last tag.
    bool fIsInTag = false;
    /// The quotation mark of the value that is open, or 0.
    char fQuote = 0;
    std::size_t fValues = 0;
};

} // namespace Kestrin
