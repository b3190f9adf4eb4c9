#pragma once

#include "notch/Theme.h"

#include <QSizeF>

class QPainter;

namespace ostrelle {

inline constexpr QSizeF kDemoDesktop{300, 138};

/// The top of a screen in small, with a window at work on it: of the size above, from the painter's origin on.
void paintDemoDesktop(QPainter &painter, ColorScheme scheme);

} // namespace ostrelle
