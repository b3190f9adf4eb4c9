#include "windows/onboarding/DemoDesktop.h"

#include "notch/controls/ColorMix.h"

#include <QPainter>
#include <QPainterPath>
#include <QPolygonF>

#include <array>
#include <span>

namespace ostrelle {
namespace {

constexpr double kBarHeight = 10;
constexpr double kWindowCorner = 3.5;
constexpr double kButtonRadius = 2.3;
constexpr double kTitleSize = 5;

void paintSky(QPainter &painter, std::span<const QColor> colors)
{
    QLinearGradient sky(0, 0, 0, kDemoDesktop.height());
    for (std::size_t i = 0; i < colors.size(); ++i)
        sky.setColorAt(static_cast<double>(i) / static_cast<double>(colors.size() - 1), colors[i]);
    painter.fillRect(QRectF(QPointF(0, 0), kDemoDesktop), sky);
}

void paintRounded(QPainter &painter, const QRectF &rect, double radius, const QColor &color)
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawRoundedRect(rect, radius, radius);
}

void paintShape(QPainter &painter, std::span<const QPointF> points, const QColor &color)
{
    QPolygonF polygon;
    for (const QPointF &point : points)
        polygon << point;
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawPolygon(polygon);
}

struct WindowFrame
{
    double left;
    double right;
    double top;
    double titleHeight;
    QString title;
    QColor ground;
    QColor ink;
    QColor button;
};

/// It goes on below the part of the screen that is shown.
void paintWindow(QPainter &painter, const WindowFrame &window)
{
    paintRounded(painter, QRectF(window.left, window.top, window.right - window.left, kDemoDesktop.height()),
                 kWindowCorner, window.ground);
    const double middle = window.top + window.titleHeight / 2;
    painter.setBrush(window.button);
    for (const double fromRight : {14.4, 6.8})
        painter.drawEllipse(QPointF(window.right - fromRight, middle), kButtonRadius, kButtonRadius);
    QFont font = Theme::interfaceFont(1, QFont::DemiBold);
    font.setPixelSize(10);
    painter.save();
    painter.translate((window.left + window.right) / 2, middle);
    painter.scale(kTitleSize / 10, kTitleSize / 10);
    painter.setFont(font);
    painter.setPen(window.ink);
    painter.drawText(QRectF(-150, -10, 300, 20), Qt::AlignCenter, window.title);
    painter.restore();
}

/// A film being cut.
void paintCut(QPainter &painter)
{
    const QRectF picture(34, 53.5, 166, 100);
    painter.fillRect(picture, QColor(0x15, 0x31, 0x3E));
    painter.setBrush(QColor(0xFC, 0xCB, 0x7A));
    painter.drawEllipse(QPointF(149.7, 73.4), 11, 11);
    paintShape(painter,
               std::array{QPointF(34, 113.4), QPointF(78.4, 86.3), QPointF(116, 109.5), QPointF(155.5, 82),
                          QPointF(200, 118), QPointF(200, 140), QPointF(34, 140)},
               QColor(0x20, 0x6E, 0x79));
    paintShape(
        painter,
        std::array{QPointF(34, 130.5), QPointF(99.2, 113.4), QPointF(200, 136.6), QPointF(200, 140), QPointF(34, 140)},
        QColor(0x10, 0x44, 0x50));

    paintRounded(painter, QRectF(205, 53.5, 87.5, 100), 0, QColor(0x27, 0x26, 0x2E));
    const QColor track(0x47, 0x46, 0x4E);
    paintRounded(painter, QRectF(210.3, 60.6, 31, 2.2), 1.1, track);
    struct Level
    {
        double top;
        double end;
        QColor color;
    };
    for (const Level &level :
         {Level{67.6, 260.5, {0xB8, 0x45, 0x9D}}, {74.3, 242, {0x4F, 0xA3, 0xE8}}, {81, 273.4, {0xF5, 0xAD, 0x55}}}) {
        paintRounded(painter, QRectF(210.3, level.top, 77.1, 2.2), 1.1, track);
        paintRounded(painter, QRectF(210.3, level.top, level.end - 210.3, 2.2), 1.1, level.color);
    }
    paintShape(painter,
               std::array{QPointF(211, 140), QPointF(216.3, 125.8), QPointF(222.6, 132.4), QPointF(232.6, 104.2),
                          QPointF(238.7, 116.8), QPointF(243.2, 112.9), QPointF(249.7, 126.6), QPointF(260.8, 107.9),
                          QPointF(267.4, 118.2), QPointF(271.3, 115.8), QPointF(277.4, 128.4), QPointF(284, 140)},
               QColor(0x86, 0x3F, 0x66));
}

struct Photo
{
    QRectF place;
    QColor ground;
};

constexpr double kPhotoCorner = 1.5;

void paintHills(QPainter &painter)
{
    paintShape(painter,
               std::array{QPointF(72, 96.6), QPointF(98.7, 80.8), QPointF(119.7, 99.5), QPointF(141.7, 82.4),
                          QPointF(141.7, 109.5), QPointF(72, 109.5)},
               QColor(0x1F, 0x5E, 0x7D));
}

void paintWave(QPainter &painter)
{
    QPainterPath wave(QPointF(219.7, 91.3));
    wave.cubicTo({226, 82}, {236, 86}, {246, 87.6});
    wave.cubicTo({261, 90}, {276, 88}, {289.5, 79.2});
    wave.lineTo(289.5, 109.5);
    wave.lineTo(219.7, 109.5);
    painter.fillPath(wave, QColor(0x41, 0x30, 0x8D));
}

/// Photographs being chosen.
void paintSelection(QPainter &painter)
{
    painter.fillRect(QRectF(6.8, 50.8, 58.5, 100), QColor(0xEE, 0xEC, 0xF1));
    double y = 57.4;
    for (const double end : {48.4, 55.3, 42.6, 51.8}) {
        paintRounded(painter, QRectF(13.2, y, end - 13.2, 3), 1.5, QColor(0xD0, 0xCC, 0xD2));
        y += 9.2;
    }
    for (const Photo &photo : {Photo{{72, 56.6, 69.7, 52.9}, {0x3D, 0x9A, 0xB8}},
                               {{146, 56.6, 69.5, 52.9}, {0xF3, 0xB1, 0x60}},
                               {{219.7, 56.6, 69.8, 52.9}, {0x6D, 0x57, 0xC8}},
                               {{72, 113.7, 69.7, 52.9}, {0xE7, 0x61, 0x7F}},
                               {{146, 113.7, 69.5, 52.9}, {0x40, 0xAD, 0x87}},
                               {{219.7, 113.7, 69.8, 52.9}, {0x22, 0x1F, 0x29}}})
        paintRounded(painter, photo.place, kPhotoCorner, photo.ground);
    paintHills(painter);
    paintWave(painter);
    painter.setBrush(QColor(0xE4, 0x57, 0x3D));
    painter.drawEllipse(QPointF(180.8, 83.4), 16.8, 16.8);
    paintRounded(painter, QRectF(156, 125.5, 49, 40), 12, QColor(0xBD, 0xE8, 0xCF));
    for (const QPointF &bar : {QPointF(237.2, 130.4), QPointF(248.6, 125), QPointF(261.2, 128.6)})
        paintRounded(painter, QRectF(bar.x() - 1, bar.y(), 2, 30), 1, QColor(0xF0, 0x74, 0xB0));
}

/// What is worked on, in a window under a sky.
struct Scene
{
    std::array<QColor, 4> sky;
    WindowFrame window;
    void (*paintWork)(QPainter &painter);
    QColor bar;
};

Scene night()
{
    return {
        .sky = {QColor(0x26, 0x20, 0x54), QColor(0x3D, 0x2A, 0x74), QColor(0x6A, 0x34, 0x82), QColor(0x8E, 0x3B, 0x78)},
        .window = {.left = 29,
                   .right = 297,
                   .top = 38.5,
                   .titleHeight = 15,
                   .title = QStringLiteral("Night ferry — cut 4"),
                   .ground = QColor(0x1E, 0x1D, 0x22),
                   .ink = QColor(0xE0, 0xDF, 0xE2),
                   .button = QColor(0x3C, 0x3B, 0x40)},
        .paintWork = paintCut,
        .bar = faded(Qt::black, 0.46)};
}

Scene brightDay()
{
    return {
        .sky = {QColor(0xBF, 0xE3, 0xF6), QColor(0xCF, 0xE7, 0xEF), QColor(0xF8, 0xEE, 0xD8), QColor(0xF8, 0xD9, 0xB4)},
        .window = {.left = 6.8,
                   .right = 295.8,
                   .top = 36.8,
                   .titleHeight = 14,
                   .title = QStringLiteral("Coast, spring — selects"),
                   .ground = QColor(0xFD, 0xFB, 0xFF),
                   .ink = QColor(0x5A, 0x56, 0x5C),
                   .button = QColor(0xDE, 0xDC, 0xE0)},
        .paintWork = paintSelection,
        .bar = faded(Qt::white, 0.55)};
}

} // namespace

void paintDemoDesktop(QPainter &painter, ColorScheme scheme)
{
    painter.save();
    painter.setPen(Qt::NoPen);
    painter.setClipRect(QRectF(QPointF(0, 0), kDemoDesktop), Qt::IntersectClip);
    const Scene scene = scheme == ColorScheme::Dark ? night() : brightDay();
    paintSky(painter, scene.sky);
    paintWindow(painter, scene.window);
    scene.paintWork(painter);
    painter.fillRect(QRectF(0, 0, kDemoDesktop.width(), kBarHeight), scene.bar);
    painter.restore();
}

} // namespace ostrelle
