#pragma once

#include "UI/Color.h"
#include "UI/Geometry.h"
#include "UI/TextStyle.h"

// The program's colours and sizes, all in one place. Sizes are in points.

namespace Kestrin {

constexpr RGBAColor kBlack{0, 0, 0, 1};
constexpr RGBAColor kWhite{1, 1, 1, 1};
/// Background of the whole window.
constexpr RGBAColor kContentBG{25 / 255.0f, 29 / 255.0f, 29 / 255.0f, 1};
constexpr RGBAColor kContentCtrlText{165 / 255.0f, 169 / 255.0f, 169 / 255.0f, 1};
/// Also the ring around what has the keyboard focus.
constexpr RGBAColor kButtonLabel{57 / 255.0f, 144 / 255.0f, 229 / 255.0f, 1};
/// Frame of the pop-up; outline of a pressed button.
constexpr RGBAColor kCtrlBlue{88 / 255.0f, 142 / 255.0f, 227 / 255.0f, 1};
constexpr RGBAColor kModalTransparentBG{0, 0, 0, 0.8f};
/// For looking at layouts while developing; on the 0 to 255 scale on purpose, so that it glares.
constexpr RGBAColor kDBGY{255, 195, 0, 1};

constexpr Size kWindowSize{560, 200};
constexpr Rect kContentRect{0, 0, kWindowSize.width, kWindowSize.height};
constexpr int kFontSize = 14;

/// The face of all captions.
constexpr FontID kControlFont = kFont4;

} // namespace Kestrin
