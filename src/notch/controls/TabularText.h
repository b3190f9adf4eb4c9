#pragma once

#include <QString>

class QFont;
class QPainter;
class QRectF;

namespace ostrelle {

// Text with figures of one width. The fonts in use do not offer them to Qt, so each stands on the width of a zero.

/// Logical pixels.
double tabularAdvance(const QFont &font, const QString &text);
/// In the painter's font and pen, from the left edge of `rect` on, in its vertical middle.
void drawTabular(QPainter &painter, const QRectF &rect, const QString &text);

} // namespace ostrelle
