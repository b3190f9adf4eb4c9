#include "platform/loupe/LoupeLens.h"

#include <QPainter>
#include <QRadialGradient>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

namespace ostrelle {

namespace {

// Logical pixels.
constexpr double kDiameter = 153;
constexpr double kRim = 1.5;
constexpr double kRing = 8;
constexpr double kOutline = 1;
constexpr double kShadowReach = 22;
constexpr double kShadowOffset = 5;

constexpr int kGridBlack = 33; // 0.13
constexpr int kGridWhite = 31; // 0.12

int mixed(int value, int target, int opacity)
{
    return value + ((target - value) * opacity + (target > value ? 127 : -127)) / 255;
}

QRgb mixed(QRgb colour, int target, int opacity)
{
    return qRgb(mixed(qRed(colour), target, opacity), mixed(qGreen(colour), target, opacity),
                mixed(qBlue(colour), target, opacity));
}

/// The squares' edges are darker on one side and lighter on the other, so that they show on every colour.
void paintRow(std::vector<QRgb> &row, const QRgb *colours, int count, int cell, int line)
{
    for (int i = 0; i < count; ++i) {
        auto *first = row.data() + i * cell;
        std::fill(first, first + cell, colours[i]);
        std::fill(first, first + line, mixed(colours[i], 255, kGridWhite));
        std::fill(first + cell - line, first + cell, mixed(colours[i], 0, kGridBlack));
    }
}

} // namespace

LoupeLens::LoupeLens(double scale, Shadow shadow)
    : m_scale(scale)
    , m_radius(static_cast<int>(std::lround((kDiameter * scale - 1) / 2)))
{
    const double around = kRim + kRing + kOutline + (shadow == Shadow::Soft ? kShadowReach + kShadowOffset : 0);
    const int half = m_radius + static_cast<int>(std::ceil(around * scale));
    m_backdrop = QImage(2 * half + 1, 2 * half + 1, QImage::Format_ARGB32_Premultiplied);
    paintBackdrop(shadow);
}

void LoupeLens::paintBackdrop(Shadow shadow)
{
    m_backdrop.fill(Qt::transparent);
    QPainter painter(&m_backdrop);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const QPointF middle = QPointF(hotSpot()) + QPointF(0.5, 0.5);
    const double outer = m_radius + 0.5 + (kRim + kRing + kOutline) * m_scale;
    if (shadow == Shadow::Soft) {
        const QPointF below = middle + QPointF(0, kShadowOffset * m_scale);
        const double reach = outer + kShadowReach * m_scale;
        QRadialGradient gradient(below, reach);
        const double edge = (outer - kShadowOffset * m_scale) / reach;
        gradient.setColorAt(0, QColor(0, 0, 0, 102));
        gradient.setColorAt(edge, QColor(0, 0, 0, 102));
        gradient.setColorAt(edge + (1 - edge) * 0.3, QColor(0, 0, 0, 56));
        gradient.setColorAt(edge + (1 - edge) * 0.65, QColor(0, 0, 0, 15));
        gradient.setColorAt(1, Qt::transparent);
        painter.setBrush(gradient);
        painter.drawEllipse(below, reach, reach);
    }
    painter.setBrush(QColor(0, 0, 0, 140));
    painter.drawEllipse(middle, outer, outer);
}

int LoupeLens::cell(int magnification) const
{
    return std::max(1, static_cast<int>(std::lround(magnification * m_scale)));
}

QRect LoupeLens::sampledArea(const QPoint &hotSpot, int magnification) const
{
    const int side = cell(magnification);
    const int reach = (m_radius - side / 2 + side - 1) / side; // squares on each side of the middle one
    return {hotSpot - QPoint(reach, reach), QSize(2 * reach + 1, 2 * reach + 1)};
}

QImage LoupeLens::magnified(const QImage &sampled, int cell) const
{
    const int count = sampled.width();
    const int line = std::max(1, static_cast<int>(std::lround(m_scale / 2)));
    QImage result(count * cell, count * cell, QImage::Format_RGB32);
    std::vector<QRgb> row(static_cast<std::size_t>(count * cell));
    std::vector<QRgb> edge(static_cast<std::size_t>(count));
    const std::size_t rowBytes = row.size() * sizeof(QRgb);
    for (int y = 0; y < count; ++y) {
        const auto *colours = reinterpret_cast<const QRgb *>(sampled.constScanLine(y));
        const auto fillRows = [&](int from, int to) {
            for (int i = from; i < to; ++i)
                std::memcpy(result.scanLine(y * cell + i), row.data(), rowBytes);
        };
        paintRow(row, colours, count, cell, line);
        fillRows(line, cell - line);
        std::transform(colours, colours + count, edge.begin(), [](QRgb c) { return mixed(c, 255, kGridWhite); });
        paintRow(row, edge.data(), count, cell, line);
        fillRows(0, line);
        std::transform(colours, colours + count, edge.begin(), [](QRgb c) { return mixed(c, 0, kGridBlack); });
        paintRow(row, edge.data(), count, cell, line);
        fillRows(cell - line, cell);
    }
    return result;
}

void LoupeLens::paint(QImage &canvas, const QImage &sampled, int magnification) const
{
    for (int y = 0; y < canvas.height(); ++y)
        std::memcpy(canvas.scanLine(y), m_backdrop.constScanLine(y), static_cast<std::size_t>(canvas.width()) * 4);
    QPainter painter(&canvas);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPointF middle = QPointF(hotSpot()) + QPointF(0.5, 0.5);
    const double inner = m_radius + 0.5;
    const QRgb colour = sampled.pixel(sampled.width() / 2, sampled.height() / 2);

    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(colour));
    const double ring = inner + (kRim + kRing) * m_scale;
    painter.drawEllipse(middle, ring, ring);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(QColor(255, 255, 255, 87), 0.5 * m_scale));
    painter.drawEllipse(middle, ring - 0.25 * m_scale, ring - 0.25 * m_scale);

    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::white);
    painter.drawEllipse(middle, inner + kRim / 2 * m_scale, inner + kRim / 2 * m_scale);
    const int side = cell(magnification);
    const QPoint corner = hotSpot() - QPoint(side / 2, side / 2); // of the middle square
    QBrush squares(magnified(sampled, side));
    const QPoint first = corner - QPoint(sampled.width() / 2, sampled.height() / 2) * side;
    squares.setTransform(QTransform::fromTranslate(first.x(), first.y()));
    painter.setBrush(squares);
    painter.drawEllipse(middle, inner - kRim / 2 * m_scale, inner - kRim / 2 * m_scale);

    const double white = 1.3 * m_scale;
    const double black = 1 * m_scale;
    const QRectF square(corner, QSizeF(side, side));
    const auto frame = [&](double width, double distance, const QColor &pen) {
        painter.setPen(QPen(pen, width));
        painter.drawRoundedRect(square.adjusted(-distance, -distance, distance, distance), distance, distance);
    };
    painter.setBrush(Qt::NoBrush);
    frame(black, white + black / 2, QColor(26, 24, 34, 230));
    frame(white, white / 2, Qt::white);
}

} // namespace ostrelle
