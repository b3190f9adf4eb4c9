#pragma once

#include <QImage>
#include <QPixmap>
#include <QString>

namespace ostrelle {

/// The picture under the pointer while entries of the shelf are dragged out.
struct AssetDragPreview
{
    static constexpr int kSide = 56;

    QImage picture; ///< square; null: the icon instead
    QImage icon;
    QString symbol; ///< where there is no icon either
    int count = 1;  ///< of the dragged entries; shown from two on

    /// kSide wide and high; the pointer belongs in its middle.
    QPixmap rendered(double devicePixelRatio) const;
};

} // namespace ostrelle
