#pragma once

#include <QBrush>

class QRectF;

namespace ostrelle {

/// A gradient across a box at an angle, as in style sheets: 0 is up, clockwise. Its line reaches as far as the box's
/// corners; stops below 0 and above 1 lie beyond them.
QLinearGradient angledGradient(const QRectF &box, double degrees, const QGradientStops &stops);

} // namespace ostrelle
