#pragma once

#include "notch/controls/ColorMix.h"

#include <QColor>

/// What the colours of the ordinary windows are made of. Opacity is from 0 to 1.
namespace ostrelle::windowTints {

inline QColor white(double opacity)
{
    return faded(Qt::white, opacity);
}

inline QColor black(double opacity)
{
    return faded(Qt::black, opacity);
}

/// The light appearance's black, with a breath of the accent.
inline QColor plum(double opacity)
{
    return faded(QColor(38, 12, 30), opacity);
}

} // namespace ostrelle::windowTints
