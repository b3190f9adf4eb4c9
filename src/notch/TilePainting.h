#pragma once

#include "records/KestroModule.h"

#include <QColor>
#include <QPointF>
#include <QRectF>

class QPainter;

namespace ostrelle {

/// How a tool's tile is painted in one frame of the opening.
struct TilePicture
{
    KestroModule module = KestroModule::Clipboard;
    QPointF centre;
    double openness = 0; ///< 0 mark of the closed notch, 1 tile
    double content = 0;  ///< opacity of the caption
    QColor plate = {};   ///< invalid: none
    QColor plateEdge = {};
    QColor color = {}; ///< of symbol and caption
};

/// The plate of a tile, or a mark's place without one.
QRectF tileShape(const TilePicture &tile);
/// The box of the symbol. It rests on whole device pixels of this ratio.
QRectF tileSymbolBox(const TilePicture &tile, double devicePixelRatio);
/// Plate, symbol and caption.
void paintTile(QPainter &painter, const TilePicture &tile, double devicePixelRatio);

} // namespace ostrelle
