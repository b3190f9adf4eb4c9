#pragma once

#include "notch/Theme.h"
#include "records/NotchTheme.h"

#include <QImage>
#include <QSize>

namespace ostrelle {

/// The sidebar's opaque ground with the theme's light in its lower left corner. `size` is in logical pixels.
QImage sidebarGround(const QSize &size, double devicePixelRatio, NotchTheme theme, ColorScheme scheme,
                     Contrast contrast);

} // namespace ostrelle
