#include "windows/onboarding/LitSymbol.h"

#include "notch/Gaussian.h"

#include <QImage>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <vector>

namespace ostrelle {
namespace {

constexpr double kSymbolSquare = 1.25;
constexpr double kGlowReach = 1.5; ///< in glow radii: three deviations

/// The alpha of a square image, blurred along its rows, with rows and columns exchanged.
std::vector<float> blurredAcross(const std::vector<float> &alpha, int side, double deviation)
{
    const int reach = static_cast<int>(std::ceil(3 * deviation));
    std::vector<float> weights;
    for (int i = -reach; i <= reach; ++i)
        weights.push_back(static_cast<float>(blurredBar(i, -0.5, 0.5, deviation)));
    const auto at = [side](int x, int y) {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(side) + static_cast<std::size_t>(x);
    };
    std::vector<float> result(alpha.size());
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x) {
            float sum = 0;
            for (int i = std::max(-reach, -x); i <= std::min(reach, side - 1 - x); ++i)
                sum += weights[static_cast<std::size_t>(i) + static_cast<std::size_t>(reach)] * alpha[at(x + i, y)];
            result[at(y, x)] = sum;
        }
    }
    return result;
}

QImage blurred(const QImage &shape, double deviation)
{
    const int side = shape.width();
    std::vector<float> alpha;
    alpha.reserve(static_cast<std::size_t>(side) * static_cast<std::size_t>(side));
    for (int y = 0; y < side; ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(shape.constScanLine(y));
        for (int x = 0; x < side; ++x)
            alpha.push_back(static_cast<float>(qAlpha(line[x])));
    }
    alpha = blurredAcross(blurredAcross(alpha, side, deviation), side, deviation);
    QImage result(shape.size(), QImage::Format_ARGB32_Premultiplied);
    auto value = alpha.cbegin();
    for (int y = 0; y < side; ++y) {
        auto *line = reinterpret_cast<QRgb *>(result.scanLine(y));
        for (int x = 0; x < side; ++x)
            line[x] = qRgba(0, 0, 0, static_cast<int>(std::lround(*value++)));
    }
    return result;
}

/// The shape in another paint.
QImage filled(QImage shape, const QBrush &paint)
{
    QPainter painter(&shape);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(shape.rect(), paint);
    return shape;
}

} // namespace

double LitSymbol::side() const
{
    return std::ceil(size * kSymbolSquare + 2 * kGlowReach * glowRadius);
}

QPixmap LitSymbol::picture(double devicePixelRatio) const
{
    const int pixels = static_cast<int>(std::lround(side() * devicePixelRatio));
    QImage shape(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    shape.fill(Qt::transparent);
    {
        QPainter painter(&shape);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.scale(devicePixelRatio, devicePixelRatio);
        paintGlyph(painter, symbol, QRectF(0, 0, side(), side()), size, weight, Qt::black);
    }
    const double room = (side() - size) / 2 * devicePixelRatio;
    QLinearGradient gradient(room, 0, pixels - room, 0);
    gradient.setStops(sweep);
    QPixmap picture(pixels, pixels);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.drawImage(0, 0, filled(blurred(shape, glowRadius / 2 * devicePixelRatio), glow));
    painter.drawImage(0, 0, filled(shape, gradient));
    painter.end();
    picture.setDevicePixelRatio(devicePixelRatio);
    return picture;
}

} // namespace ostrelle
