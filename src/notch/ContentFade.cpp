#include "notch/ContentFade.h"

#include "notch/controls/EdgeFade.h"

#include <QPainter>
#include <QPixmap>

#include <algorithm>

namespace ostrelle {
namespace {

constexpr double kBottomFade = 14;

} // namespace

void ContentFade::setLook(double opacity, const QRectF &visible)
{
    m_opacity = opacity;
    m_visible = visible;
}

void ContentFade::draw(QPainter *painter)
{
    if (m_opacity <= 0)
        return;
    QPoint offset;
    const QPixmap content = sourcePixmap(Qt::LogicalCoordinates, &offset, QGraphicsEffect::NoPad);
    painter->save();
    painter->setOpacity(m_opacity);
    paintFadedContent(*painter, offset, content, m_visible);
    painter->restore();
}

void paintFadedContent(QPainter &painter, const QPointF &position, const QPixmap &content, const QRectF &visible)
{
    const QRectF whole(position, content.deviceIndependentSize());
    const QRectF shown = whole.intersected(visible);
    if (shown.isEmpty())
        return;
    // What ends before the surface does has no need to fade.
    const bool isCut = whole.y() + whole.height() > visible.y() + visible.height();
    const EdgeFade fade{.bottom = isCut ? std::min(kBottomFade, shown.height()) : 0};
    paintEdgeFaded(painter, shown, fade, [&](QPainter &onto) { onto.drawPixmap(position, content); });
}

} // namespace ostrelle
