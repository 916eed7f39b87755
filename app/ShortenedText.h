#pragma once

#include "Strings/UString.h"
#include "UI/View.h"

/// `text`, cut at its end and closed by an ellipsis where it is wider than `width` points in the
/// font that `view` is set up with; empty when not even the ellipsis fits.
UString ShortenedText(const Kestrin::View& view, const UString& text, float width);
