#pragma once

#include <QPointF>
#include <QRectF>
#include <Qt>

#include <optional>
#include <utility>

namespace ostrelle {

/// Where the tiles of the shelf stand: six columns in reading order, centred. Logical pixels, from the top of the
/// content.
struct AssetGridLayout
{
    static constexpr int kColumns = 6;
    static constexpr double kTileSide = 84;
    static constexpr double kColumnSpacing = 8;
    static constexpr double kRowSpacing = 10;
    static constexpr double kRowPitch = kTileSide + kRowSpacing;
    static constexpr double kPadding = 12; ///< above and below
    static constexpr double kWidth = kColumns * kTileSide + (kColumns - 1) * kColumnSpacing;

    int count = 0;
    double width = kWidth; ///< of what the grid is centred in

    double contentHeight() const;
    QRectF tile(int index) const;
    /// The tile there; nothing between tiles.
    std::optional<int> tileAt(const QPointF &position) const;
    /// First and last of the tiles whose rows meet this stretch of the content; the first is beyond the last when there
    /// are none.
    std::pair<int, int> tilesBetween(double top, double bottom) const;
    /// Where a key leads from a tile; nothing when it is none that moves. `pageRows` is how many rows fit.
    std::optional<int> stepped(int from, Qt::Key key, int pageRows) const;

    friend bool operator==(const AssetGridLayout &, const AssetGridLayout &) = default;
};

} // namespace ostrelle
