#include "notch/OutlineFade.h"

#include <QPainter>
#include <QPixmap>

namespace ostrelle {

void OutlineFade::setLook(double opacity, const QPainterPath &outline)
{
    m_opacity = opacity;
    m_outline = outline;
}

void OutlineFade::draw(QPainter *painter)
{
    if (m_opacity <= 0)
        return;
    QPoint offset;
    const QPixmap content = sourcePixmap(Qt::LogicalCoordinates, &offset, QGraphicsEffect::NoPad);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setClipPath(m_outline, Qt::IntersectClip);
    painter->setOpacity(m_opacity);
    painter->drawPixmap(offset, content);
    painter->restore();
}

} // namespace ostrelle
