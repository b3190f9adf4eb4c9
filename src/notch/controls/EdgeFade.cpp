#include "notch/controls/EdgeFade.h"

#include <QImage>
#include <QLinearGradient>
#include <QPaintDevice>
#include <QPainter>

namespace ostrelle {
namespace {

/// From what is clear to what is opaque.
struct Course
{
    QPointF clear;
    QPointF opaque;
};

/// One band on an image of its own, in whole device pixels so that it meets the middle without a seam.
void paintBand(QPainter &painter, const QRectF &band, const Course &course,
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
    QLinearGradient mask(course.clear, course.opaque);
    mask.setColorAt(0, Qt::transparent);
    mask.setColorAt(1, Qt::black);
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
    const QRectF left(rect.left(), rect.top(), fade.left, rect.height());
    const QRectF right(rect.left() + rect.width() - fade.right, rect.top(), fade.right, rect.height());
    painter.save();
    painter.setClipRect(rect.adjusted(fade.left, fade.top, -fade.right, -fade.bottom), Qt::IntersectClip);
    paintContent(painter);
    painter.restore();
    if (fade.top > 0)
        paintBand(painter, top, {top.topLeft(), top.bottomLeft()}, paintContent);
    if (fade.bottom > 0)
        paintBand(painter, bottom, {bottom.bottomLeft(), bottom.topLeft()}, paintContent);
    if (fade.left > 0)
        paintBand(painter, left, {left.topLeft(), left.topRight()}, paintContent);
    if (fade.right > 0)
        paintBand(painter, right, {right.topRight(), right.topLeft()}, paintContent);
}

} // namespace ostrelle
