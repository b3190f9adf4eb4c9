#include "notch/TilePainting.h"

#include "notch/Glyph.h"
#include "notch/Plate.h"
#include "notch/Theme.h"
#include "notch/controls/ColorMix.h"

#include <QPainter>

#include <cmath>

namespace ostrelle {
namespace {

constexpr QSizeF kTile{78, 50};
constexpr QSizeF kMark{22, 20};
constexpr double kMarkSymbolSize = 11.2;
constexpr double kTileSymbolSize = 16;
constexpr double kSymbolBox = 20;
constexpr double kCaptionGap = 5;
constexpr double kCaptionHeight = 14;
/// The symbol's centre lies this far above the tile's, so that symbol and caption together are centred.
constexpr double kSymbolRise = (kCaptionGap + kCaptionHeight) / 2;

double openedTo(double from, double to, double openness)
{
    return from + (to - from) * openness;
}

} // namespace

QRectF tileShape(const TilePicture &tile)
{
    const QSizeF size(openedTo(kMark.width(), kTile.width(), tile.openness),
                      tile.content > 0 ? kTile.height() : kMark.height());
    return {tile.centre - QPointF(size.width(), size.height()) / 2, size};
}

QRectF tileSymbolBox(const TilePicture &tile, double devicePixelRatio)
{
    // Whole device pixels at both ends of the way, so that the symbol is crisp where it rests.
    const double rise = std::round(kSymbolRise * devicePixelRatio) / devicePixelRatio * tile.openness;
    const QPointF symbol = tile.centre - QPointF(0, rise);
    return {symbol - QPointF(kSymbolBox, kSymbolBox) / 2, QSizeF(kSymbolBox, kSymbolBox)};
}

void paintTile(QPainter &painter, const TilePicture &tile, double devicePixelRatio)
{
    if (tile.plate.isValid())
        paintPlate(painter, tileShape(tile), tile.plate, tile.plateEdge);
    const QRectF box = tileSymbolBox(tile, devicePixelRatio);
    paintGlyph(painter, symbol(tile.module), box, openedTo(kMarkSymbolSize, kTileSymbolSize, tile.openness),
               GlyphWeight::Medium, tile.color);
    if (tile.content <= 0)
        return;
    painter.setFont(Theme::font(FontRole::CaptionMedium));
    painter.setPen(faded(tile.color, tile.content));
    const QRectF caption(tile.centre.x() - kTile.width() / 2, box.bottom() + kCaptionGap, kTile.width(),
                         kCaptionHeight);
    painter.drawText(caption, Qt::AlignCenter | Qt::TextDontClip, tileCaption(tile.module));
}

} // namespace ostrelle
