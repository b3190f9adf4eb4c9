#include "notch/controls/EdgeFade.h"

#include <QImage>
#include <QLinearGradient>
#include <QPaintDevice>
#include <QPainter>

namespace ostrelle {
namespace {

enum class Edge { Top, Bottom };

/// One band on an image of its own, in whole device pixels so that it meets the middle without a seam.
void paintBand(QPainter &painter, const QRectF &band, Edge opaqueAwayFrom,
               const std::function<void(QPainter &)> &paintContent)
{
    const double ratio = painter.device()->devicePixelRatioF();
    const QRectF deviceBand = painter.transform().mapRect(band);
    const QRect pixels = QRectF(deviceBand.topLeft() * ratio, deviceBand.size() * ratio).toAlignedRect();
    if (pixels.isEmpty())
        return;
    QImage layer(pixels.size(), QImage::Format_ARGB32_Premultiplied);
    layer.setDevicePixelRatio(ratio);
    layer.fill(Qt::transparent);
    const QPointF origin = QPointF(pixels.topLeft()) / ratio;

    QPainter onLayer(&layer);
    onLayer.setRenderHints(painter.renderHints());
    onLayer.setFont(painter.font());
    onLayer.setTransform(painter.transform() * QTransform::fromTranslate(-origin.x(), -origin.y()));
    onLayer.save();
    paintContent(onLayer);
    onLayer.restore();
    QLinearGradient mask(band.topLeft(), band.bottomLeft());
    mask.setColorAt(0, opaqueAwayFrom == Edge::Top ? Qt::transparent : Qt::black);
    mask.setColorAt(1, opaqueAwayFrom == Edge::Top ? Qt::black : Qt::transparent);
    onLayer.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    onLayer.fillRect(band.adjusted(-1, -1, 1, 1), mask);
    onLayer.end();

    painter.save();
    painter.setClipRect(band, Qt::IntersectClip);
    painter.resetTransform();
    painter.drawImage(origin, layer);
    painter.restore();
}

} // namespace

void paintEdgeFaded(QPainter &painter, const QRectF &rect, const EdgeFade &fade,
                    const std::function<void(QPainter &)> &paintContent)
{
    const QRectF top(rect.left(), rect.top(), rect.width(), fade.top);
    const QRectF bottom(rect.left(), rect.top() + rect.height() - fade.bottom, rect.width(), fade.bottom);
    painter.save();
    painter.setClipRect(QRectF(top.bottomLeft(), bottom.topRight()), Qt::IntersectClip);
    paintContent(painter);
    painter.restore();
    if (fade.top > 0)
        paintBand(painter, top, Edge::Top, paintContent);
    if (fade.bottom > 0)
        paintBand(painter, bottom, Edge::Bottom, paintContent);
}

} // namespace ostrelle
