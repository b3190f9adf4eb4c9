#pragma once

#include <QImage>
#include <QRegion>
#include <QSize>

namespace ostrelle {

/// Averages `pixels` in cells of `cell` by `cell` pixels (1 or more, may be fractional) into an image of `size`, one
/// pixel per cell. Cells beyond the edges repeat the outermost ones. Null when `pixels` or `size` is empty.
QImage reduceToCells(const QImage &pixels, double cell, const QSize &size);

/// Replaces what lies in `region`, column by column, by the pixel just below the region's lowest one there; where the
/// image ends above that, by the nearest column that has one.
void replaceByWhatIsBelow(QImage &pixels, const QRegion &region);

} // namespace ostrelle
