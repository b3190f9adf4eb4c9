#include "notch/controls/RoundedPlates.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace ostrelle {
namespace {

/// At rest and selected, before and after a change of the appearance or the screen.
constexpr std::size_t kKept = 4;

bool isWhole(double value)
{
    constexpr double kNear = 1e-3;
    return std::abs(value - std::round(value)) < kNear;
}

void fillRounded(QPainter &painter, const QRectF &square, double radius, const QColor &color)
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawRoundedRect(square, radius, radius);
}

} // namespace

bool isOnPixel(const QPainter &painter, const QPointF &point)
{
    const QTransform toDevice = painter.deviceTransform();
    const QPointF place = toDevice.map(point);
    return toDevice.type() <= QTransform::TxScale && qFuzzyCompare(toDevice.m11(), toDevice.m22()) &&
           isWhole(place.x()) && isWhole(place.y());
}

void RoundedPlates::paint(QPainter &painter, const QRectF &square, double radius, const QColor &color)
{
    const double scale = painter.deviceTransform().m11();
    if (!isOnPixel(painter, square.topLeft()) || !isWhole(square.width() * scale)) {
        fillRounded(painter, square, radius, color);
        return;
    }
    painter.drawImage(square.topLeft(), plate(square.width(), radius, scale, color));
}

const QImage &RoundedPlates::plate(double side, double radius, double scale, const QColor &color)
{
    const auto known = std::find_if(m_plates.begin(), m_plates.end(), [&](const Plate &plate) {
        return plate.side == side && plate.radius == radius && plate.scale == scale && plate.color == color.rgba();
    });
    if (known != m_plates.end())
        return known->image;
    if (m_plates.size() == kKept)
        m_plates.erase(m_plates.begin());
    const int pixels = static_cast<int>(std::lround(side * scale));
    QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    fillRounded(painter, QRectF(0, 0, side, side), radius, color);
    painter.end();
    return m_plates.emplace_back(Plate{side, radius, scale, color.rgba(), image}).image;
}

} // namespace ostrelle
