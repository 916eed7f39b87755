#include "XML/StartTagGuard.h"

namespace Kestrin {

namespace {

// libxml2 takes a sixth of a second for them, and minutes for ten times as many.
constexpr std::size_t kMostValues = 10'000;

} // namespace

bool StartTagGuard::Takes(std::string_view piece) {
    // No tag holds a second "<", so that a long one is at the end of one piece and in those that
    // follow. Tags that end within a piece are short.
    if (const std::size_t start = piece.rfind('<'); start != std::string_view::npos) {
        piece.remove_prefix(start);
        *this = {};
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
