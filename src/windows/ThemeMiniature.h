#pragma once

#include "notch/Theme.h"
#include "records/NotchTheme.h"

#include <QPixmap>
#include <QSizeF>

namespace ostrelle {

/// A screen in small with an open notch in a theme, painted by what paints the notch itself; with round corners.
/// Lengths are logical pixels, everything but the corners grows with the width.
QPixmap themeMiniature(const QSizeF &size, double cornerRadius, double devicePixelRatio, NotchTheme theme,
                       ColorScheme scheme, Contrast contrast);

} // namespace ostrelle
