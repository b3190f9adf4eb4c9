#include "files/AssetGridLayout.h"

#include <algorithm>
#include <cmath>

namespace ostrelle {
namespace {

constexpr double kColumnPitch = AssetGridLayout::kTileSide + AssetGridLayout::kColumnSpacing;

} // namespace

double AssetGridLayout::contentHeight() const
{
    const int rows = (count + kColumns - 1) / kColumns;
    return rows == 0 ? 0 : rows * kTileSide + (rows - 1) * kRowSpacing + 2 * kPadding;
}

QRectF AssetGridLayout::tile(int index) const
{
    const double left = std::floor((width - kWidth) / 2);
    const int row = index / kColumns;
    return {left + index % kColumns * kColumnPitch, kPadding + row * kRowPitch, kTileSide, kTileSide};
}

std::optional<int> AssetGridLayout::tileAt(const QPointF &position) const
{
    const QPointF inGrid = position - tile(0).topLeft();
    if (inGrid.x() < 0 || inGrid.y() < 0)
        return std::nullopt;
    const int column = static_cast<int>(inGrid.x() / kColumnPitch);
    const int index = static_cast<int>(inGrid.y() / kRowPitch) * kColumns + column;
    if (column >= kColumns || index >= count || !tile(index).contains(position))
        return std::nullopt;
    return index;
}

std::pair<int, int> AssetGridLayout::tilesBetween(double top, double bottom) const
{
    const int firstRow = std::max(static_cast<int>(std::floor((top - kPadding + kRowSpacing) / kRowPitch)), 0);
    const int lastRow = static_cast<int>(std::floor((bottom - kPadding) / kRowPitch));
    return {firstRow * kColumns, std::min((lastRow + 1) * kColumns, count) - 1};
}

std::optional<int> AssetGridLayout::stepped(int from, Qt::Key key, int pageRows) const
{
    int step = 0;
    switch (key) {
    case Qt::Key_Left:
        step = -1;
        break;
    case Qt::Key_Right:
        step = 1;
        break;
    case Qt::Key_Up:
        step = -kColumns;
        break;
    case Qt::Key_Down:
        step = kColumns;
        break;
    case Qt::Key_PageUp:
        step = -kColumns * pageRows;
        break;
    case Qt::Key_PageDown:
        step = kColumns * pageRows;
        break;
    case Qt::Key_Home:
        return 0;
    case Qt::Key_End:
        return count - 1;
    default:
        return std::nullopt;
    }
    if (from < 0)
        return 0;
    const int lastRow = (count - 1) / kColumns;
    const bool isVertical = step % kColumns == 0;
    if (isVertical) {
        // In the column as far as it goes; a short last row is entered at its end.
        const int row = std::clamp(from / kColumns + step / kColumns, 0, lastRow);
        return std::min(row * kColumns + from % kColumns, count - 1);
    }
    return std::clamp(from + step, 0, count - 1);
}

} // namespace ostrelle
