#pragma once

#include <QColor>
#include <QImage>

#include <vector>

class QPainter;
class QRectF;

namespace ostrelle {

/// Paints squares with round corners in one colour, from images where they stand on whole pixels. Qt fills a path of
/// more than a few rows on its thread pool and waits for it, which on a busy machine takes milliseconds for each.
class RoundedPlates
{
public:
    /// With the painter's render hints and opacity. `square` is in the painter's units.
    void paint(QPainter &painter, const QRectF &square, double radius, const QColor &color);

private:
    struct Plate
    {
        double side = 0;
        double radius = 0;
        double scale = 1; ///< device pixels in a unit
        QRgb color = 0;
        QImage image;
    };

    const QImage &plate(double side, double radius, double scale, const QColor &color);

    std::vector<Plate> m_plates; ///< the latest one last
};

/// Does the painter put the point onto a corner of a device pixel, with no turn and the same scale on both axes? Then
/// an image with this scale as its device pixel ratio is copied as it is.
bool isOnPixel(const QPainter &painter, const QPointF &point);

} // namespace ostrelle
