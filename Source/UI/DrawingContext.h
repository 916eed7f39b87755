#pragma once

#include "Strings/UString.h"
#include "UI/Color.h"
#include "UI/Geometry.h"
#include "UI/TextStyle.h"

#include <memory>

class CGContext;

namespace Kestrin {

struct DrawingContextData;
class Path;
class TextLayout;

/// What a view draws with. It is live during the view's draw event only: every operation that draws
/// is a fatal fault outside of one (thrown as -603). Coordinates are those of the view.
class DrawingContext {
public:
    /// Asked for when a path is stroked, and without effect: paths are always smooth.
    enum AntiAliasMode : int { kAntiAliasDefault = 0, kAntiAliasOff = 1, kAntiAliasOn = 2 };

    DrawingContext();
    ~DrawingContext();
    DrawingContext(const DrawingContext&) = delete;
    DrawingContext& operator=(const DrawingContext&) = delete;

    /// Begins a draw event on `context` (not owned) in which everything is as opaque as `alpha`
    /// says; ends it with (null, 1.0).
    void SetDrawEventContextInfo(CGContext* context, float alpha);

    /// Sets the opacity, within that of the draw event.
    void SetAlpha(float alpha);

    // Text. Font and measuring need no draw event.

    void SetupFont(FontID family, unsigned int size, const RGBAColor& color);
    float StringWidth(const UString& text);
    /// How DrawString shortens a text that is too long; not at all at first.
    void SetTruncate(TextTruncate truncate);
    /// Draws one line, vertically centred within the rectangle; nothing for an empty text or
    /// rectangle.
    void DrawString(const UString& text, Rect rect, TextAlignment alignment);

    /// Draws a layout of the caller's own, wrapped or truncated text, with the start of its first
    /// baseline at `start`.
    void DrawTextLayout(TextLayout& layout, const Point& start);

    // Shapes. A negative extent reaches to the other side of the rectangle's origin.

    void FrameRect(const Rect& rect, float width, const RGBAColor& color);
    void FillRect(const Rect& rect, const RGBAColor& color);
    void StrokePath(Path& path, float width, RGBAColor color, AntiAliasMode mode);
    void FillPath(Path& path, const RGBAColor& color);

private:
    CGContext& LiveContext() const;

    std::unique_ptr<DrawingContextData> fData;
};

} // namespace Kestrin
