#pragma once

#include "files/TileNames.h"
#include "notch/controls/ControlContext.h"
#include "notch/controls/RoundedPlates.h"

#include <QImage>
#include <QRectF>
#include <QString>

#include <optional>

class QPainter;

namespace ostrelle {

/// What tiles keep of their painting.
struct TileCache
{
    RoundedPlates plates;
    TileNames names;
};

/// One entry of the shelf as it looks at a moment: a square with its picture or icon over its name, and what stands on
/// the square. Places are in the tile's coordinates, logical pixels.
struct AssetTile
{
    QString name;
    QImage picture;             ///< as AssetThumbnails has it; null: the icon instead
    std::optional<QImage> icon; ///< nothing while it is being loaded
    QString symbol;             ///< where the desktop has no icon
    bool isMissing = false;
    bool isSelected = false;
    bool showsFocus = false;
    bool isPlaying = false;
    bool isRemovePressed = false;
    bool isPlayPressed = false;
    // 0 to 1, and beyond where a spring carries them.
    double hover = 0;
    double playBadge = 0;
    double playingRing = 0;
    std::optional<double> playProgress = {}; ///< how much of the sound was heard
    double playShift = 0;                    ///< of the badge that shakes, to the right
    double playOpacity = 1;

    static constexpr int kIconSide = 34;

    /// All that a tile at this place may paint on.
    static QRectF paintedRect(const QPointF &place);
    static QRectF square();
    static QRectF playBadgeRect();
    /// Where the badge is on a tile under the pointer.
    static QRectF removeBadgeRect(bool reducesMotion);

    /// Into a tile whose top left corner is at the painter's origin.
    void paint(QPainter &painter, const ControlContext &context, TileCache &cache) const;

private:
    double squareScale(bool reducesMotion) const;
    void paintSquare(QPainter &painter, const ControlContext &context, TileCache &cache) const;
    void paintPicture(QPainter &painter) const;
    void paintRing(QPainter &painter, const ControlContext &context) const;
    void paintRemoveBadge(QPainter &painter, bool reducesMotion) const;
    void paintName(QPainter &painter, const ControlContext &context, TileCache &cache) const;
};

} // namespace ostrelle
