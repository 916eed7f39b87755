#include "UI/OSTextLayoutQt.h"

#include "tests/UI/Picture.h"
#include "tests/support/RecordingLog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

using namespace Kestrin;

namespace {

UString Text(const char* utf8) {
    return UString(utf8, UString::kUTF8);
}

struct Work {
    int fonts = 0;
    int typesetters = 0;
    int lines = 0;
    bool operator==(const Work&) const = default;
};

/// The platform's own text, with a count of what was asked of it.
class CountingTextSystem final : public NativeTextSystem {
public:
    std::shared_ptr<const NativeFont> CreateFont(const std::string& family, double size,
                                                 double horizontalScale,
                                                 double verticalScale) override {
        ++work.fonts;
        return Shared().CreateFont(family, size, horizontalScale, verticalScale);
    }

    std::unique_ptr<NativeTypesetter> CreateTypesetter(std::u16string text,
                                                       const NativeTextStyle& style) override {
        ++work.typesetters;
        return std::make_unique<Typesetter>(Shared().CreateTypesetter(std::move(text), style),
                                            work);
    }

    Work work;

private:
    class Typesetter final : public NativeTypesetter {
    public:
        Typesetter(std::unique_ptr<NativeTypesetter> inner, Work& work)
            : fInner(std::move(inner))
            , fWork(work) {}
        std::size_t SuggestLineBreak(std::size_t start, double width) const override {
            return fInner->SuggestLineBreak(start, width);
        }
        std::unique_ptr<NativeTextLine> CreateLine(std::size_t start,
                                                   std::size_t count) const override {
            ++fWork.lines;
            return fInner->CreateLine(start, count);
        }

    private:
        std::unique_ptr<NativeTypesetter> fInner;
        Work& fWork;
    };
};

class TextLayoutTest : public testing::Test {
protected:
    TextLayoutTest() {
        layout.SetFont(kFontPlain, 14);
        RecordingLog::Clear();
    }

    /// What `change` and the measuring after it make anew.
    template <typename Change>
    Work WorkOf(Change change) {
        layout.Width();
        system.work = {};
        change();
        layout.Width();
        return system.work;
    }

    static void DrawOn(TextLayout& drawn, CGBitmapContext& picture) {
        picture.Context().SaveGState();
        picture.Context().TranslateCTM(10, 30);
        drawn.DrawLayout(&picture.Context());
        picture.Context().RestoreGState();
    }

    Ink Drawn() {
        CGBitmapContext picture(400, 200);
        DrawOn(layout, picture);
        return InkOf(picture);
    }

    CountingTextSystem system;
    OSTextLayoutQt layout{system};
};

TEST_F(TextLayoutTest, LaysOutNothingForUnchangedValues) {
    layout.SetText(Text("Group"));
    EXPECT_EQ(WorkOf([&] {
                  layout.SetFont(kFontPlain, 14);
                  layout.SetColor({0, 0, 0, 1});
                  layout.SetLineLength(3.4028234663852886e+38F);
                  layout.SetTruncate(kTruncateNone);
                  layout.SetAlignment(kTextAlignDefault);
                  layout.SetWrap(kWrapNone);
                  layout.SetHorizontalScale(1);
                  layout.SetVerticalScale(1);
                  layout.GetAscent();
                  layout.Height();
                  Drawn();
              }),
              Work{});
}

TEST_F(TextLayoutTest, RebuildsOnlyWhatAChangeConcerns) {
    // A layout makes the text's line and the ellipsis'.
    const Work lines{0, 2, 2};
    const Work all{1, 2, 2};
    layout.SetText(Text("Group"));
    EXPECT_EQ(WorkOf([&] { layout.SetText(Text("Group")); }), lines);
    EXPECT_EQ(WorkOf([&] { layout.SetLineLength(100); }), lines);
    EXPECT_EQ(WorkOf([&] { layout.SetAlignment(kTextAlignRight); }), lines);
    EXPECT_EQ(WorkOf([&] { layout.SetTruncate(kTruncateTail); }), lines);
    EXPECT_EQ(WorkOf([&] { layout.SetWrap(kWrapWord); }), lines);
    EXPECT_EQ(WorkOf([&] { layout.SetColor({1, 0, 0, 1}); }), all);
    EXPECT_EQ(WorkOf([&] { layout.SetSize(14.5); }), all);
    EXPECT_EQ(WorkOf([&] { layout.SetFontFamily(kFontBold); }), all);
    EXPECT_EQ(WorkOf([&] { layout.SetVerticalScale(2); }), all);
    EXPECT_EQ(WorkOf([&] { layout.SetTracking(3); }), Work{});
    EXPECT_EQ(layout.GetTracking(), 3);
}

TEST_F(TextLayoutTest, WrapsAtWordsWithinTheLineLength) {
    layout.SetWrap(kWrapWord);
    layout.SetLineLength(120);
    layout.SetText(Text("Words that are broken over a number of lines"));
    system.work = {};
    layout.Width();
    const int lines = system.work.lines - 1;
    EXPECT_GE(lines, 3);
    EXPECT_FLOAT_EQ(layout.Height(),
                    layout.LineHeight() * static_cast<float>(lines) - layout.GetLeading());
    EXPECT_GT(layout.Width(), 60);
    const Ink ink = Drawn();
    EXPECT_LE(ink.right, 10 + 120 + 1);
    EXPECT_NEAR(ink.bottom - ink.top, layout.Height(), layout.GetAscent());
}

TEST_F(TextLayoutTest, BreaksAtLineEndsAndInsideWordsThatAreTooLong) {
    const auto lineCount = [&](const char* text) {
        layout.SetText(Text(text));
        system.work = {};
        layout.Width();
        return system.work.lines - 1;
    };
    layout.SetWrap(kWrapWord);
    EXPECT_EQ(lineCount("one\ntwo\r\nthree"), 3);
    EXPECT_EQ(lineCount("one\n\ntwo"), 3);
    layout.SetLineLength(40);
    EXPECT_GE(lineCount("Donaudampfschifffahrt"), 3);
    EXPECT_LE(layout.Width(), 40);
    layout.SetLineLength(0);
    EXPECT_EQ(lineCount("abc"), 3) << "one character to a line at least";
}

TEST_F(TextLayoutTest, AppliesLineSpacingAtTheNextLayoutOnly) {
    layout.SetWrap(kWrapWord);
    layout.SetText(Text("one\ntwo\nthree"));
    const float before = layout.Height();
    layout.SetLineSpacing(10);
    EXPECT_EQ(layout.Height(), before);
    layout.SetLineLength(300);
    EXPECT_FLOAT_EQ(layout.Height(), before + 20);
}

TEST_F(TextLayoutTest, TruncatesWithAnEllipsis) {
    const UString text = Text("WWWWWWWWiiiiiiiiiiiiiiiiWWWWWWWW");
    layout.SetText(text);
    layout.SetLineLength(150);
    for (TextTruncate truncate : {kTruncateHead, kTruncateMiddle, kTruncateTail}) {
        layout.SetTruncate(truncate);
        EXPECT_LE(layout.Width(), 150);
        EXPECT_GT(layout.Width(), 125);
        CGBitmapContext picture(400, 50);
        DrawOn(layout, picture);
        // The same text with the ellipsis written by hand looks the same for exactly one cut.
        int matches = 0;
        for (std::size_t kept = 1; kept < text.length(); ++kept) {
            const std::size_t head = truncate == kTruncateTail     ? kept
                                     : truncate == kTruncateMiddle ? (kept + 1) / 2
                                                                   : 0;
            UString cut(text, 0, head);
            cut.append(Text("\u2026"));
            cut.append(UString(text, text.length() - (kept - head)));
            OSTextLayoutQt byHand(system);
            byHand.SetFont(kFontPlain, 14);
            byHand.SetText(cut);
            CGBitmapContext expected(400, 50);
            DrawOn(byHand, expected);
            matches += SamePicture(picture, expected) ? 1 : 0;
        }
        EXPECT_EQ(matches, 1) << "truncation " << truncate;
    }
}

TEST_F(TextLayoutTest, LeavesATextWholeThatFitsOrWhereNotEvenTheEllipsisDoes) {
    layout.SetText(Text("Group position"));
    const float whole = layout.Width();
    layout.SetTruncate(kTruncateTail);
    EXPECT_EQ(layout.Width(), whole);
    layout.SetLineLength(1);
    EXPECT_EQ(layout.Width(), whole);
}

TEST_F(TextLayoutTest, PlacesLinesByTheirAlignment) {
    layout.SetText(Text("HIH  "));
    layout.SetLineLength(300);
    EXPECT_NEAR(Drawn().left, 10, 2);
    layout.SetAlignment(kTextAlignCenter);
    EXPECT_NEAR(Drawn().MiddleX(), 160, 1.5) << "blanks at the end do not count";
    layout.SetAlignment(kTextAlignRight);
    EXPECT_NEAR(Drawn().right, 309, 2);
    layout.SetLineLength(5);
    EXPECT_NEAR(Drawn().left, 10, 2) << "what is too wide starts at the left";
}

TEST_F(TextLayoutTest, ReportsUnknownValuesAndGoesOn) {
    layout.SetText(Text("A text that is too long"));
    layout.SetLineLength(60);
    layout.SetAlignment(static_cast<TextAlignment>(7));
    EXPECT_THAT(RecordingLog::Lines(), testing::ElementsAre("Unknown alignment type."));
    EXPECT_NEAR(Drawn().left, 10, 2);

    RecordingLog::Clear();
    layout.SetTruncate(static_cast<TextTruncate>(9));
    EXPECT_LE(layout.Width(), 60);
    EXPECT_THAT(RecordingLog::Lines(),
                testing::ElementsAre("Unknown truncation type.", "Unknown truncation type."));

    RecordingLog::Clear();
    layout.SetWrap(static_cast<TextWrap>(2));
    EXPECT_GT(layout.Height(), 2 * layout.LineHeight());
    EXPECT_THAT(RecordingLog::Lines(), testing::ElementsAre("Unknown wrap type."));
}

TEST_F(TextLayoutTest, ScalesGlyphsAndMeasures) {
    layout.SetText(Text("Group"));
    const float width = layout.Width();
    const float ascent = layout.GetAscent();
    const Ink plain = Drawn();
    layout.SetHorizontalScale(2);
    layout.SetVerticalScale(1.5);
    EXPECT_FLOAT_EQ(layout.Width(), 2 * width);
    EXPECT_FLOAT_EQ(layout.GetAscent(), 1.5F * ascent);
    const Ink scaled = Drawn();
    EXPECT_NEAR(scaled.right - scaled.left, 2 * (plain.right - plain.left), 3);
    EXPECT_GT(scaled.bottom - scaled.top, plain.bottom - plain.top + 3);
}

TEST_F(TextLayoutTest, ClonesAndClearsItsStyle) {
    layout.SetText(Text("Two words"));
    const float plain = layout.Width();
    layout.SetSize(24);
    layout.SetWrap(kWrapWord);
    layout.SetLineLength(60);
    const auto clone = layout.Clone();
    EXPECT_EQ(clone->Height(), layout.Height());
    EXPECT_EQ(clone->Width(), layout.Width());
    layout.ClearStyle();
    layout.SetFont(kFontPlain, 14);
    EXPECT_EQ(layout.Width(), plain);
}

TEST_F(TextLayoutTest, ShapesScriptsThatJoinAndRunFromTheRight) {
    const auto width = [&](const char* text) {
        layout.SetText(Text(text));
        return layout.Width();
    };
    // Letters that join are narrower than the same letters alone.
    EXPECT_LT(width("ببب"), 3 * width("ب") - 1);
    EXPECT_EQ(width("e\u0301"), width("\u00E9")) << "a combining accent takes no room";
}

TEST(Fonts, AMissingFamilyIsReplacedByOneThatCanBeRead) {
    NativeTextSystem& system = NativeTextSystem::Shared();
    const auto widthOf = [&](const char* family) {
        NativeTextStyle style;
        style.font = system.CreateFont(family, 20, 1, 1);
        const auto line = system.CreateTypesetter(u"ill WW", style)->CreateLine(0, 6);
        return line->GetTypographicBounds().width;
    };
    EXPECT_EQ(widthOf("No Such Family At All"), widthOf("sans-serif"));
    EXPECT_GT(widthOf("No Such Family At All Bold"), widthOf("No Such Family At All"));
    EXPECT_GT(widthOf(""), 0);
    EXPECT_LT(widthOf("Helvetica Neue Condensed Bold"), widthOf("Helvetica Neue Bold"));
}

TEST(Fonts, SizesThatAreNotWholeOrNotPositiveAreServed) {
    NativeTextSystem& system = NativeTextSystem::Shared();
    const auto ascentOf = [&](double size) {
        return system.CreateFont("Helvetica Neue", size, 1, 1)->GetAscent();
    };
    EXPECT_GT(ascentOf(14.5), ascentOf(14));
    EXPECT_LT(ascentOf(14.5), ascentOf(15));
    EXPECT_EQ(ascentOf(0), ascentOf(12));
    EXPECT_EQ(ascentOf(-3), ascentOf(12));
    EXPECT_NEAR(ascentOf(2000), 2 * ascentOf(1000), 1);
}

} // namespace
