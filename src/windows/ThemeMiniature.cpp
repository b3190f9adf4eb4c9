#include "windows/ThemeMiniature.h"

#include "notch/NotchSurface.h"
#include "notch/controls/ColorMix.h"

#include <QBrush>
#include <QImage>
#include <QPainter>
#include <QPainterPath>

namespace ostrelle {
namespace {

/// What the measures are given for.
constexpr double kDrawnWidth = 110;
constexpr double kBarHeight = 4;
constexpr QSizeF kNotchSize(86, 40);
constexpr double kNotchCorner = 9;
constexpr double kNotchEar = 4;
constexpr double kTilesTop = 15;
constexpr QSizeF kTileSize(10, 8.4);
constexpr double kTileRadius = 2.4;
constexpr double kTileGap = 2.6;
constexpr int kTiles = 6;
/// The surface is painted as large as this makes it and then shrunk, so that its glows keep their proportions.
constexpr double kSurfaceScale = 0.42;
constexpr double kPoolReach = 0.78;
constexpr double kPoolStrengthDark = 2;
constexpr double kPoolStrengthLight = 2.6;
constexpr double kSeamHeight = 1.3;
constexpr double kSeamAboveEdge = 5.2;
constexpr double kRimWidth = 1;
constexpr double kEdge = 0.75;

void paintWallpaper(QPainter &painter, const QSizeF &size, bool dark)
{
    QLinearGradient sky(QPointF(0, 0), QPointF(size.width(), size.height() * 0.6));
    sky.setColorAt(0, dark ? QColor(0x30, 0x32, 0x49) : QColor(0xC6, 0xDC, 0xEA));
    sky.setColorAt(0.42, dark ? QColor(0x58, 0x3F, 0x5A) : QColor(0xE4, 0xD9, 0xEA));
    sky.setColorAt(1, dark ? QColor(0x8B, 0x5C, 0x62) : QColor(0xF6, 0xD3, 0xB8));
    painter.fillRect(QRectF(QPointF(0, 0), size), sky);

    const auto point = [&size](double x, double y) { return QPointF(x * size.width(), y * size.height()); };
    QPainterPath hill(point(0, 0.80));
    hill.cubicTo(point(0.28, 0.62), point(0.42, 0.78), point(0.58, 0.715));
    hill.cubicTo(point(0.74, 0.64), point(0.84, 0.61), point(1, 0.70));
    hill.lineTo(point(1, 1));
    hill.lineTo(point(0, 1));
    hill.closeSubpath();
    QLinearGradient ground(QPointF(0, 0), QPointF(size.width(), 0));
    ground.setColorAt(0, dark ? QColor(0x30, 0x27, 0x3B) : QColor(0xB3, 0xBD, 0xD6));
    ground.setColorAt(1, dark ? QColor(0x3E, 0x2D, 0x40) : QColor(0xB9, 0xBB, 0xC9));
    painter.fillPath(hill, ground);
    painter.fillRect(QRectF(0, 0, size.width(), kBarHeight), faded(dark ? Qt::black : Qt::white, dark ? 0.42 : 0.55));
}

void paintNotch(QPainter &painter, double middle, NotchTheme theme, ColorScheme scheme, Contrast contrast)
{
    const bool dark = scheme == ColorScheme::Dark;
    SurfaceCache cache;
    painter.save();
    painter.translate(middle, 0);
    painter.scale(kSurfaceScale, kSurfaceScale);
    paintNotchSurface(painter, {},
                      {.size = kNotchSize / kSurfaceScale,
                       .expansion = 1,
                       .bottomRadius = kNotchCorner / kSurfaceScale,
                       .topRadius = kNotchEar / kSurfaceScale,
                       .scheme = scheme,
                       .contrast = contrast,
                       .theme = theme,
                       .emphasis = {.poolReach = kPoolReach,
                                    .poolStrength = dark ? kPoolStrengthDark : kPoolStrengthLight,
                                    .seamHeight = kSeamHeight / kSurfaceScale,
                                    .seamAboveEdge = kSeamAboveEdge / kSurfaceScale,
                                    .rimWidth = kRimWidth / kSurfaceScale}},
                      cache);
    painter.restore();
    painter.setPen(Qt::NoPen);
    painter.setBrush(dark ? faded(Qt::white, 0.13) : faded(QColor(47, 14, 37), 0.11));
    double x = middle - (kTiles * kTileSize.width() + (kTiles - 1) * kTileGap) / 2;
    for (int i = 0; i < kTiles; ++i, x += kTileSize.width() + kTileGap)
        painter.drawRoundedRect(QRectF(QPointF(x, kTilesTop), kTileSize), kTileRadius, kTileRadius);
}

} // namespace

QPixmap themeMiniature(const QSizeF &size, double cornerRadius, double devicePixelRatio, NotchTheme theme,
                       ColorScheme scheme, Contrast contrast)
{
    const bool dark = scheme == ColorScheme::Dark;
    const QSize pixels = (size * devicePixelRatio).toSize();
    // First without corners: a picture with straight edges that fills a rounded shape has smooth ones.
    QImage screen(pixels, QImage::Format_ARGB32_Premultiplied);
    {
        QPainter painter(&screen);
        painter.setRenderHint(QPainter::Antialiasing);
        const double scale = size.width() / kDrawnWidth * devicePixelRatio;
        painter.scale(scale, scale);
        const QSizeF drawn(kDrawnWidth, size.height() * kDrawnWidth / size.width());
        paintWallpaper(painter, drawn, dark);
        paintNotch(painter, kDrawnWidth / 2, theme, scheme, contrast);
    }
    QPixmap picture(pixels);
    picture.setDevicePixelRatio(devicePixelRatio);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    QBrush brush(screen);
    brush.setTransform(QTransform::fromScale(1 / devicePixelRatio, 1 / devicePixelRatio));
    const QRectF box(QPointF(0, 0), size);
    painter.setPen(Qt::NoPen);
    painter.setBrush(brush);
    painter.drawRoundedRect(box, cornerRadius, cornerRadius);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(dark ? faded(Qt::white, 0.14) : faded(QColor(38, 12, 30), 0.12), kEdge));
    const double inset = kEdge / 2;
    painter.drawRoundedRect(box.adjusted(inset, inset, -inset, -inset), cornerRadius - inset, cornerRadius - inset);
    return picture;
}

} // namespace ostrelle
