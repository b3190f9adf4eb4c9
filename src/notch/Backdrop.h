#pragma once

#include "notch/Theme.h"

#include <QImage>

namespace ostrelle {

/// A capture for the backdrop has one pixel for this many logical pixels in each direction.
inline constexpr int kBackdropReduction = 8;

/// The glass's view of what lies behind it: blurred, more saturated and in the dark appearance brighter. The capture
/// begins at the screen's top edge and is taken as mirrored beyond its edges, so that none of them darkens. Same size
/// as the capture, opaque. Null for a null capture. Any thread.
QImage blurBackdrop(const QImage &capturedEighth, ColorScheme scheme);

} // namespace ostrelle
