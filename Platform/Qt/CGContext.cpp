#include "Platform/UI/CGContext.h"

#include "Platform/Qt/QtGeometry.h"
#include "Platform/Qt/QtGraphics.h"

#include <QPen>
#include <algorithm>
#include <utility>

namespace Kestrin {

namespace {

/// `component` within 0 and 1; 0 for what is not a number.
float Clamped(double component) {
    return component > 0 ? static_cast<float>(std::min(component, 1.0)) : 0.0F;
}

QPen PlainPen() {
    constexpr double kMiterLimit = 10;
    QPen pen(Qt::black, 1, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin);
    pen.setMiterLimit(kMiterLimit);
    return pen;
}

/// Whether `painter` has a line to draw with; to the toolkit, width 0 means one pixel.
bool HasLine(const QPainter& painter) {
    return painter.pen().widthF() > 0;
}

} // namespace

QColor ColorOf(double red, double green, double blue, double alpha) {
    return QColor::fromRgbF(Clamped(red), Clamped(green), Clamped(blue), Clamped(alpha));
}

CGContext ContextOver(QPainter& painter) {
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    painter.setPen(PlainPen());
    painter.setBrush(Qt::black);
    return CGContext(std::make_unique<CGContext::Data>(painter));
}

} // namespace Kestrin

CGContext::CGContext(std::unique_ptr<Data> data)
    : fData(std::move(data)) {}

CGContext::~CGContext() = default;

void CGContext::SaveGState() {
    const QPainter& painter = fData->painter;
    fData->savedStates.push_back(
        {painter.worldTransform(), painter.pen(), painter.brush(), painter.opacity()});
}

void CGContext::RestoreGState() {
    if (fData->savedStates.empty())
        return;
    QPainter& painter = fData->painter;
    const Data::State& state = fData->savedStates.back();
    if (painter.worldTransform() != state.transform)
        painter.setWorldTransform(state.transform);
    if (painter.pen() != state.pen)
        painter.setPen(state.pen);
    if (painter.brush() != state.brush)
        painter.setBrush(state.brush);
    if (painter.opacity() != state.opacity)
        painter.setOpacity(state.opacity);
    fData->savedStates.pop_back();
}

void CGContext::TranslateCTM(double tx, double ty) {
    fData->painter.translate(tx, ty);
}

void CGContext::SetAlpha(double alpha) {
    fData->painter.setOpacity(Kestrin::Clamped(alpha));
}

void CGContext::SetRGBFillColor(double red, double green, double blue, double alpha) {
    fData->painter.setBrush(Kestrin::ColorOf(red, green, blue, alpha));
}

void CGContext::SetRGBStrokeColor(double red, double green, double blue, double alpha) {
    QPen pen = fData->painter.pen();
    pen.setColor(Kestrin::ColorOf(red, green, blue, alpha));
    fData->painter.setPen(pen);
}

void CGContext::SetLineWidth(double width) {
    QPen pen = fData->painter.pen();
    pen.setWidthF(width > 0 ? width : 0);
    fData->painter.setPen(pen);
}

void CGContext::FillRect(CGRect rect) {
    fData->painter.fillRect(Kestrin::ToQt(rect), fData->painter.brush());
}

void CGContext::StrokeRectWithWidth(CGRect rect, double width) {
    const QPen before = fData->painter.pen();
    SetLineWidth(width);
    QPainterPath outline;
    outline.addRect(Kestrin::ToQt(rect));
    if (Kestrin::HasLine(fData->painter))
        fData->painter.strokePath(outline, fData->painter.pen());
    fData->painter.setPen(before);
}

void CGContext::StrokeLineSegments(std::span<const CGPoint> points) {
    if (!Kestrin::HasLine(fData->painter))
        return;
    for (std::size_t i = 0; i + 1 < points.size(); i += 2)
        fData->painter.drawLine(Kestrin::ToQt(points[i]), Kestrin::ToQt(points[i + 1]));
}

void CGContext::AddPath(const CGPath& path) {
    fData->path.setFillRule(Qt::WindingFill);
    fData->path.addPath(path.GetData().path);
}

void CGContext::StrokePath() {
    const QPainterPath path = std::exchange(fData->path, {});
    if (Kestrin::HasLine(fData->painter))
        fData->painter.strokePath(path, fData->painter.pen());
}

void CGContext::FillPath() {
    const QPainterPath path = std::exchange(fData->path, {});
    fData->painter.fillPath(path, fData->painter.brush());
}

// What is drawn on this surface is there at once.
void CGContext::Synchronize() {}
