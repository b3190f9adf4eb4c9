#pragma once

#include "notch/Theme.h"
#include "records/NotchTheme.h"

class QPainter;
class QRectF;

namespace ostrelle {

/// A line in the theme's gradient, clear at both ends, with a glow of this radius around it.
void paintSeamLine(QPainter &painter, const QRectF &line, NotchTheme theme, ColorScheme scheme, double glowRadius);

} // namespace ostrelle
