#pragma once

#include <QColor>

class QPainter;
class QRectF;
class QWidget;

namespace ostrelle {

class NotchAppearance;

/// The colours of a card, with their opacity.
struct CardTints
{
    QColor fill;
    QColor topEdge;
    QColor outline;
};

/// A card's fill, the light along its top, and its outline. Logical pixels; wants a painter that smooths edges, and
/// leaves its pen and brush changed.
void paintCard(QPainter &painter, const QRectF &box, double radius, const CardTints &tints);

/// The line between a row of a card and the one above it, from `x` on; at least a pixel of the screen thick.
void paintRowLine(QPainter &painter, const QWidget &row, const NotchAppearance &appearance, double x);

} // namespace ostrelle
