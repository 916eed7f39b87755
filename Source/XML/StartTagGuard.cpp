#include "XML/StartTagGuard.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace Kestrin {

namespace {

// libxml2 takes a sixth of a second for them, and minutes for ten times as many.
constexpr std::size_t kMostValues = 10'000;

// What holds about as many.
constexpr std::size_t kMostOfDTD = std::size_t{64} << 10;
constexpr std::size_t kMostOfOtherEncodings = std::size_t{256} << 10;

// A second or so.
constexpr std::size_t kMostComparisons = 1'000'000'000;

/// Whether every byte below 0x80 is the character that it is in ASCII, by the document's beginning.
bool IsLikeASCII(const std::string& start) {
    const std::size_t first = start.find_first_not_of("\xEF\xBB\xBF \t\r\n");
    if (first == std::string::npos || start[first] != '<' || start[first + 1] == '\0')
        return false;
    const std::string declaration = start.substr(first, start.find("?>") - first);
    const std::size_t encoding = declaration.find("encoding");
    if (!declaration.starts_with("<?xml") || encoding == std::string::npos)
        return true;
    constexpr const char* kNames[] = {"UTF-8", "utf-8", "ISO-8859-", "iso-8859-", "US-ASCII"};
    return std::ranges::any_of(kNames, [&](const char* name) {
        return declaration.find(name, encoding) != std::string::npos;
    });
}

} // namespace

bool StartTagGuard::Takes(std::string_view piece) {
    constexpr std::string_view kDTD = "<!DOCTYPE";
    fBytesBeforeNode += piece.size();
    if (!fHasNode) {
        const std::size_t searched = fStart.size() - std::min(fStart.size(), kDTD.size());
        fStart += piece;
        fIsBehindDTD = fIsBehindDTD || fStart.find(kDTD, searched) != std::string::npos;
    }
    return CountsIn(piece) && fBytesBeforeNode <= MostBeforeNode();
}

bool StartTagGuard::TakesNode(std::size_t declaredAttributes) {
    if (!std::exchange(fHasNode, true))
        fIsLikeASCII = IsLikeASCII(fStart);
    fIsBehindDTD = false;
    fBytesBeforeNode = 0;
    fComparisons += declaredAttributes * declaredAttributes;
    return fComparisons <= kMostComparisons;
}

std::size_t StartTagGuard::MostBeforeNode() const {
    if (fIsBehindDTD)
        return kMostOfDTD;
    const bool isLikeASCII = fHasNode ? fIsLikeASCII : IsLikeASCII(fStart);
    return isLikeASCII ? std::numeric_limits<std::size_t>::max() : kMostOfOtherEncodings;
}

bool StartTagGuard::CountsIn(std::string_view piece) {
    // No tag holds a second "<", so that a long one is at the end of one piece and in those that
    // follow. Tags that end within a piece are short.
    if (const std::size_t start = piece.rfind('<'); start != std::string_view::npos) {
        piece.remove_prefix(start);
        fQuote = 0;
        fValues = 0;
        fIsInTag = true;
    }
    for (std::size_t at = 0; fIsInTag && at < piece.size(); ++at) {
        if (fQuote != 0)
            fQuote = piece[at] == fQuote ? '\0' : fQuote;
        else if (piece[at] == '>' || piece[at] == '!' || piece[at] == '?')
            fIsInTag = false;
        else if (piece[at] == '"' || piece[at] == '\'') {
            fQuote = piece[at];
            ++fValues;
        }
    }
    return fValues <= kMostValues;
}

} // namespace Kestrin
