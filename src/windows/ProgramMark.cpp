#include "windows/ProgramMark.h"

#include "notch/Gaussian.h"
#include "notch/NotchShape.h"
#include "notch/Theme.h"
#include "notch/controls/ColorMix.h"

#include <QImage>
#include <QPainter>
#include <QPainterPath>

#include <array>

namespace ostrelle {
namespace {

// All lengths are hundredths of the mark's size.
constexpr double kSide = 100;
constexpr double kTileCorner = 31;
constexpr QRectF kLozenge(24, 0, 52, 26);
constexpr NotchShape kLozengeShape{.bottomRadius = 11.5, .topRadius = 6};
constexpr double kEdgeWidth = 2.4;
constexpr double kCoreWidth = 0.7;
constexpr double kCoreOpacity = 0.5;
constexpr double kEdgeStart = 5; ///< from the top, where the edge begins to be lit
constexpr double kEdgeFull = 21;
struct Glow
{
    double width;
    double blur;
};
constexpr std::array kGlows = {Glow{7, 7}, Glow{4, 2.2}};
constexpr double kLightFrom = 6;
constexpr double kLightTo = 94;
constexpr QPointF kLightCentre(50, 25);
constexpr double kLightReach = 76;
constexpr double kOutlineWidth = 1;
constexpr double kOutlineOpacity = 0.16;

/// A square whose corners set in gradually, further out than a circle's would.
QPainterPath tilePath()
{
    constexpr double kExtent = kTileCorner * 1.35;
    constexpr double kHandle = kExtent * 0.245; // through the same diagonal point as the circle
    QPainterPath path(QPointF(kExtent, 0));
    path.lineTo(kSide - kExtent, 0);
    path.cubicTo(kSide - kHandle, 0, kSide, kHandle, kSide, kExtent);
    path.lineTo(kSide, kSide - kExtent);
    path.cubicTo(kSide, kSide - kHandle, kSide - kHandle, kSide, kSide - kExtent, kSide);
    path.lineTo(kExtent, kSide);
    path.cubicTo(kHandle, kSide, 0, kSide - kHandle, 0, kSide - kExtent);
    path.lineTo(0, kExtent);
    path.cubicTo(0, kHandle, kHandle, 0, kExtent, 0);
    return path;
}

/// A line that is blurred: strokes on each other, from the widest on, that add up to the profile of a blurred bar.
void strokeBlurred(QPainter &painter, const QPainterPath &path, const Glow &glow, const QColor &color)
{
    constexpr int kSteps = 16;
    const double deviation = glow.blur / 2;
    const double reach = glow.width / 2 + 2.5 * deviation;
    double covered = 0;
    for (int i = 0; i < kSteps; ++i) {
        const double distance = reach * (1 - (i + 0.5) / kSteps);
        const double wanted = blurredBar(distance, -glow.width / 2, glow.width / 2, deviation);
        painter.strokePath(path, QPen(faded(color, (wanted - covered) / (1 - covered)), 2 * distance, Qt::SolidLine,
                                      Qt::RoundCap, Qt::RoundJoin));
        covered = wanted;
    }
}

QLinearGradient sweepAcross(double from, double to, const QGradientStops &stops)
{
    QLinearGradient gradient(from, 0, to, 0);
    gradient.setStops(stops);
    return gradient;
}

template <typename Paint>
QImage layer(double pixels, Paint paint)
{
    QImage image(QSize(qRound(pixels), qRound(pixels)), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(image.width() / kSide, image.height() / kSide);
    paint(painter);
    return image;
}

QImage litEdge(double pixels, const QGradientStops &sweep, const QColor &glow)
{
    return layer(pixels, [&](QPainter &painter) {
        const QPainterPath edge = kLozengeShape.openPath(kLozenge);
        for (const Glow &each : kGlows)
            strokeBlurred(painter, edge, each, glow);
        painter.strokePath(edge,
                           QPen(sweepAcross(kLozenge.left(), kLozenge.left() + kLozenge.width(), sweep), kEdgeWidth));
        painter.strokePath(edge, QPen(faded(Qt::white, kCoreOpacity), kCoreWidth));
        QLinearGradient lit(0, kEdgeStart, 0, kEdgeFull);
        lit.setColorAt(0, Qt::transparent);
        lit.setColorAt(1, Qt::black);
        painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
        painter.fillRect(QRectF(0, 0, kSide, kSide), lit);
    });
}

QImage fallingLight(double pixels, const QGradientStops &sweep)
{
    return layer(pixels, [&](QPainter &painter) {
        painter.fillRect(QRectF(0, 0, kSide, kSide), sweepAcross(kLightFrom, kLightTo, sweep));
        QRadialGradient falloff(kLightCentre, kLightReach);
        falloff.setColorAt(0, Qt::black);
        falloff.setColorAt(0.3, faded(Qt::black, 0.74));
        falloff.setColorAt(0.62, faded(Qt::black, 0.26));
        falloff.setColorAt(1, Qt::transparent);
        painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
        painter.fillRect(QRectF(0, 0, kSide, kSide), falloff);
    });
}

void paintLozenge(QPainter &painter, const QImage &edge)
{
    painter.fillPath(kLozengeShape.path(kLozenge), Theme::kHardware);
    painter.drawImage(QRectF(0, 0, kSide, kSide), edge);
    // The light lies outside; the lozenge itself stays black but for its rim.
    QPainterPath inner = kLozengeShape.path(kLozenge.adjusted(kEdgeWidth / 2, 0, -kEdgeWidth / 2, -kEdgeWidth / 2));
    painter.fillPath(inner, Theme::kHardware);
}

void paintTile(QPainter &painter, double pixels, const QGradientStops &sweep, const QImage &edge)
{
    const QImage face = layer(pixels, [&](QPainter &on) {
        QLinearGradient ground(0, 0, 0, kSide);
        ground.setColorAt(0, QColor(0x2B, 0x1F, 0x33));
        ground.setColorAt(1, QColor(0x12, 0x0E, 0x16));
        on.fillRect(QRectF(0, 0, kSide, kSide), ground);
        on.drawImage(QRectF(0, 0, kSide, kSide), fallingLight(pixels, sweep));
        paintLozenge(on, edge);
    });
    // Filling the shape with the finished face gives it smooth edges.
    QBrush brush(face);
    brush.setTransform(QTransform::fromScale(kSide / face.width(), kSide / face.height()));
    const QPainterPath tile = tilePath();
    painter.fillPath(tile, brush);
    painter.setClipPath(tile);
    painter.strokePath(tile, QPen(faded(Qt::white, kOutlineOpacity), 2 * kOutlineWidth));
}

} // namespace

QPixmap ProgramMark::picture(double devicePixelRatio) const
{
    const QGradientStops stops = sweep.isEmpty() ? Theme::accentSeam() : sweep;
    const double pixels = size * devicePixelRatio;
    const QImage edge = litEdge(pixels, stops, glow.isValid() ? glow : Theme::kMagenta);
    QPixmap picture(qRound(pixels), qRound(pixels));
    picture.setDevicePixelRatio(devicePixelRatio);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    painter.scale(size / kSide, size / kSide);
    if (frame == Frame::Tile)
        paintTile(painter, pixels, stops, edge);
    else
        paintLozenge(painter, edge);
    return picture;
}

} // namespace ostrelle
