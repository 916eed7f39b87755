#pragma once

#include "UI/TextLayout.h"
#include "UI/View.h"

#include <memory>
#include <vector>

/// Text as a view draws it: captions at the left, in the middle and at the right of their
/// rectangles, a paragraph that wraps, and lines shortened at the start, the middle and the end.
class TextSamples : public Kestrin::View {
public:
    TextSamples();

    void DoDraw(Kestrin::DrawingContext& context) override;

private:
    /// A layout that is made once and kept: drawing it again lays out nothing.
    struct Sample {
        std::unique_ptr<Kestrin::TextLayout> layout;
        Kestrin::Point start;
    };

    void DrawCaptions(Kestrin::DrawingContext& context);

    std::vector<Sample> fSamples;
};
