#pragma once

#include <QBrush>
#include <QColor>
#include <QPixmap>

namespace ostrelle {

/// The program's mark: the black lozenge hanging from the top edge of a tile, its edge lit, light falling below it.
struct ProgramMark
{
    /// Unframed: the lozenge and its lit edge, without the tile.
    enum class Frame { Tile, None };

    double size = 64; ///< of the tile's side, logical pixels
    Frame frame = Frame::Tile;
    QGradientStops sweep = {}; ///< of edge and light; empty: the accent's
    QColor glow = {};          ///< around the edge; invalid: the accent

    QPixmap picture(double devicePixelRatio) const;
};

} // namespace ostrelle
