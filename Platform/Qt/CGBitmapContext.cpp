#include "Platform/UI/CGBitmapContext.h"

#include "Platform/Qt/QtGraphics.h"

#include <QImage>
#include <cmath>

namespace Kestrin {

namespace {

QImage TransparentImage(double width, double height, double scale) {
    QImage image(static_cast<int>(std::ceil(width * scale)),
                 static_cast<int>(std::ceil(height * scale)), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::transparent);
    return image;
}

} // namespace

struct CGBitmapContext::Data {
    Data(double width, double height, double scale)
        : image(TransparentImage(width, height, scale))
        , painter(&image)
        , context(ContextOver(painter)) {}

    QImage image;
    QPainter painter;
    CGContext context;
};

CGBitmapContext::CGBitmapContext(double width, double height, double scale)
    : fData(std::make_unique<Data>(width, height, scale)) {}

CGBitmapContext::~CGBitmapContext() = default;

CGContext& CGBitmapContext::Context() {
    return fData->context;
}

int CGBitmapContext::PixelWidth() const {
    return fData->image.width();
}

int CGBitmapContext::PixelHeight() const {
    return fData->image.height();
}

CGBitmapContext::Pixel CGBitmapContext::PixelAt(int x, int y) const {
    if (!fData->image.valid(x, y))
        return {};
    const QColor color = fData->image.pixelColor(x, y);
    const auto component = [](int value) { return static_cast<std::uint8_t>(value); };
    return {component(color.red()), component(color.green()), component(color.blue()),
            component(color.alpha())};
}

} // namespace Kestrin
