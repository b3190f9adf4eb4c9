#pragma once

class QPainter;
class QRectF;
class QString;

namespace ostrelle {

/// The signs of a key combination, from the left edge of `rect` on, in the painter's font and pen.
void paintKeySigns(QPainter &painter, const QRectF &rect, const QString &signs);

} // namespace ostrelle
