#include "notch/ContentFade.h"

#include "notch/controls/EdgeFade.h"

#include <QPaintDevice>
#include <QPainter>

#include <algorithm>

namespace ostrelle {
namespace {

constexpr double kBottomFade = 14;

} // namespace

ContentFade::ContentFade(QObject *parent)
    : QGraphicsEffect(parent)
{
    connect(this, &QGraphicsEffect::enabledChanged, this, [this] { m_content = {}; });
}

void ContentFade::setLook(double opacity, const QRectF &visible)
{
    m_opacity = opacity;
    m_visible = visible;
}

void ContentFade::draw(QPainter *painter)
{
    if (m_opacity <= 0)
        return;
    painter->save();
    painter->setOpacity(m_opacity);
    paintFadedContent(*painter, sourceBoundingRect().topLeft(), content(painter->device()->devicePixelRatioF()),
                      m_visible);
    painter->restore();
}

/// Qt would have a widget painted for every frame. It does put the picture into its cache, and takes it out when
/// something of the widget is to be painted anew: a picture that nobody shares with us any more is an old one.
const QPixmap &ContentFade::content(double ratio)
{
    const QSizeF size = sourceBoundingRect().size();
    const bool isOfSize = m_content.deviceIndependentSize() == size && m_content.devicePixelRatio() == ratio;
    if (m_content.isNull() || m_content.isDetached() || !isOfSize)
        m_content = sourcePixmap(Qt::LogicalCoordinates, nullptr, QGraphicsEffect::NoPad);
    return m_content;
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
