// A caption of 30 characters: its width, and drawing it from a layout that is kept, beside what the
// toolkit offers for each.

#include "Diagnostics/Failure.h"
#include "UI/DrawingContext.h"
#include "UI/Internal/FontNames.h"
#include "UI/TextLayout.h"

#include "Platform/Qt/QtFonts.h"
#include "Platform/UI/CGBitmapContext.h"
#include "Platform/UI/NativeApplication.h"

#include <benchmark/benchmark.h>

#include <QFontMetricsF>
#include <QImage>
#include <QPainter>
#include <QStaticText>

void Log(const char*, ...) {}

namespace {

using namespace Kestrin;

constexpr unsigned int kSize = 14;
constexpr int kWidth = 300;
constexpr int kHeight = 40;

struct Script {
    const char* name;
    const char* caption;
};

constexpr Script kScripts[] = {
    {"Latin", "Mackie Control XT: position 12"},
    {"Arabic", "\u0645\u0631\u062D\u0628\u0627 \u0628\u0627\u0644\u0639\u0627\u0644\u0645 "
               "\u0645\u0631\u062D\u0628\u0627 \u0628\u0627\u0644\u0639\u0627\u0644\u0645 "
               "\u0645\u0631"},
};

UString OurText(const Script& script) {
    return UString(script.caption, UString::kUTF8);
}

QFont ToolkitFont() {
    NativeApplication::Shared();
    return FontNamed(FontName(kFontPlain).utf8_str(), kSize);
}

void WidthOurs(benchmark::State& state, const Script& script) {
    DrawingContext context;
    context.SetupFont(kFontPlain, kSize, {0, 0, 0, 1});
    const UString text = OurText(script);
    for (auto _ : state)
        benchmark::DoNotOptimize(context.StringWidth(text));
}

void WidthOfFontMetrics(benchmark::State& state, const Script& script) {
    const QFontMetricsF metrics(ToolkitFont());
    const QString text = QString::fromUtf8(script.caption);
    for (auto _ : state)
        benchmark::DoNotOptimize(metrics.horizontalAdvance(text));
}

void DrawOurs(benchmark::State& state, const Script& script) {
    NativeApplication::Shared();
    CGBitmapContext picture(kWidth, kHeight);
    const auto layout = TextLayout::Create();
    layout->SetFont(kFontPlain, kSize);
    layout->SetText(OurText(script));
    picture.Context().TranslateCTM(10, 20);
    for (auto _ : state)
        layout->DrawLayout(&picture.Context());
}

void DrawStaticText(benchmark::State& state, const Script& script) {
    const QFont font = ToolkitFont();
    QImage picture(kWidth, kHeight, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    painter.setFont(font);
    painter.translate(10, 20);
    QStaticText text(QString::fromUtf8(script.caption));
    text.setTextFormat(Qt::PlainText);
    text.prepare({}, font);
    const QPointF above(0, -QFontMetricsF(font).ascent());
    for (auto _ : state)
        painter.drawStaticText(above, text);
}

const bool sRegistered = [] {
    for (const Script& script : kScripts) {
        const std::string name = script.name;
        benchmark::RegisterBenchmark(("StringWidth/" + name + "/ours").c_str(), WidthOurs, script);
        benchmark::RegisterBenchmark(("StringWidth/" + name + "/QFontMetricsF").c_str(),
                                     WidthOfFontMetrics, script);
        benchmark::RegisterBenchmark(("DrawKeptLayout/" + name + "/ours").c_str(), DrawOurs,
                                     script);
        benchmark::RegisterBenchmark(("DrawKeptLayout/" + name + "/QStaticText").c_str(),
                                     DrawStaticText, script);
    }
    return true;
}();

} // namespace
