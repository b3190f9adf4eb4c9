#pragma once

#include <QPaintDevice>
#include <QPainter>

#include <algorithm>

namespace ostrelle {

/// How thick a separator is, logical pixels: half a one, but never less than a pixel of the screen, which would be lost
/// between two of them.
inline double hairlineThickness(const QPainter &painter)
{
    return std::max(0.5, 1 / painter.device()->devicePixelRatioF());
}

} // namespace ostrelle
