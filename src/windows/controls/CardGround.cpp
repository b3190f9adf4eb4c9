#include "windows/controls/CardGround.h"

#include "windows/WindowColors.h"

#include <QPainter>
#include <QPainterPath>
#include <QWidget>

#include <algorithm>

namespace ostrelle {
namespace {

constexpr double kCardEdge = 0.75;

} // namespace

void paintCard(QPainter &painter, const QRectF &box, double radius, const CardTints &tints)
{
    QPainterPath card;
    card.addRoundedRect(box, radius, radius);
    painter.fillPath(card, tints.fill);
    painter.fillPath(card.subtracted(card.translated(0, kCardEdge)), tints.topEdge);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(tints.outline, kCardEdge));
    const double inset = kCardEdge / 2;
    painter.drawRoundedRect(box.adjusted(inset, inset, -inset, -inset), radius - inset, radius - inset);
}

void paintRowLine(QPainter &painter, const QWidget &row, const NotchAppearance &appearance, double x)
{
    const double thickness = std::max(kCardEdge, 1 / row.devicePixelRatioF());
    painter.fillRect(QRectF(x, 0, row.width() - x, thickness), WindowColors::of(appearance).hairline);
}

} // namespace ostrelle
