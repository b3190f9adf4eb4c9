#include "notch/controls/RowPlate.h"

#include "notch/controls/GlyphButton.h"

namespace ostrelle {

QRectF RowPlate::plate(const QRectF &row)
{
    return {row.x() + kSideMargin, row.y(), row.width() - 2 * kSideMargin, kHeight};
}

QRectF RowPlate::buttonRect(const QRectF &plate, int fromTrailing)
{
    constexpr int kSide = GlyphButton::kDiameter;
    const double right = plate.x() + plate.width() - kPadding - fromTrailing * (kSide + kButtonSpacing);
    return {right - kSide, plate.y() + (plate.height() - kSide) / 2, kSide, kSide};
}

} // namespace ostrelle
