#include "examples/gallery/TextSamples.h"

#include "UI/DrawingContext.h"
#include "examples/gallery/Colors.h"

using namespace Kestrin;

namespace {

constexpr float kColumnWidth = 230;
constexpr float kSecondColumn = 250;

UString Text(const char* utf8) {
    return UString(utf8, UString::kUTF8);
}

std::unique_ptr<TextLayout> LayoutOf(const UString& text) {
    auto layout = TextLayout::Create();
    layout->SetFont(kFontPlain, kTextSize);
    layout->SetColor(kText);
    layout->SetLineLength(kColumnWidth);
    layout->SetText(text);
    return layout;
}

} // namespace

TextSamples::TextSamples() {
    SetDimensions(kSecondColumn + kColumnWidth, 160);
    auto paragraph = LayoutOf(Text("A paragraph is broken at its words, whichever way they run: "
                                   "\u05E9\u05DC\u05D5\u05DD, \u0645\u0631\u062D\u0628\u0627."));
    paragraph->SetWrap(kWrapWord);
    const float ascent = paragraph->GetAscent();
    fSamples.push_back({std::move(paragraph), {kSecondColumn, ascent}});
    float y = 80 + ascent;
    for (TextTruncate truncate : {kTruncateHead, kTruncateMiddle, kTruncateTail}) {
        auto line = LayoutOf(Text("One line that is too long for its column"));
        line->SetTruncate(truncate);
        const float height = line->LineHeight() + 8;
        fSamples.push_back({std::move(line), {kSecondColumn, y}});
        y += height;
    }
}

void TextSamples::DoDraw(DrawingContext& context) {
    DrawCaptions(context);
    for (const Sample& sample : fSamples)
        context.DrawTextLayout(*sample.layout, sample.start);
}

void TextSamples::DrawCaptions(DrawingContext& context) {
    const struct {
        const char* text;
        TextAlignment alignment;
        FontID font;
    } captions[] = {{"At the left", kTextAlignLeft, kFontPlain},
                    {"In the middle", kTextAlignCenter, kFontBold},
                    {"At the right", kTextAlignRight, kFontCondensedBold}};
    float y = 0;
    for (const auto& caption : captions) {
        const Rect frame{1, y + 1, kColumnWidth - 20, 32};
        const Rect inside{frame.x + 8, frame.y, frame.width - 16, frame.height};
        context.FrameRect(frame, 1, kAccent);
        context.SetupFont(caption.font, kTextSize, kText);
        context.DrawString(Text(caption.text), inside, caption.alignment);
        y += 44;
    }
}
