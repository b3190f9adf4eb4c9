#pragma once

#include <QStringList>
#include <QStringView>

class QColor;
class QPainter;
class QRectF;

namespace ostrelle {

/// How heavy the pen is, as in the weights of a typeface.
enum class GlyphWeight { Light, Regular, Medium, Semibold, Bold };

/// Width of the pen in logical pixels for a symbol of `systemSize`: a fraction of the size by weight (0.066, 0.082,
/// 0.094, 0.112, 0.136), at least 1, in steps of 0.05.
double glyphPenWidth(double systemSize, GlyphWeight weight);

/// Paints a symbol of the icon set centred in `box`, in a square of 1.25 × `systemSize` logical pixels, turned
/// clockwise by `rotationDegrees` about its centre. The square may be larger than the box.
///
/// The symbol is one shape: the alpha of `color` fades all of it alike, also where strokes cross, and the marks cut out
/// of a filled badge show what lies behind. An unknown symbol paints nothing and is logged once. Main thread.
void paintGlyph(QPainter &painter, QStringView symbol, const QRectF &box, double systemSize, GlyphWeight weight,
                const QColor &color, double rotationDegrees = 0);

/// The names of all symbols, sorted.
QStringList glyphNames();

bool hasGlyph(QStringView symbol);

} // namespace ostrelle
