#pragma once

#include "files/RecentEntry.h"
#include "notch/controls/ControlContext.h"

#include <QRectF>
#include <QString>

class QPainter;

namespace ostrelle {

/// A recent file as a row of the list, as it looks at a moment. Places are in logical pixels.
struct RecentRow
{
    static constexpr int kHeight = 30;

    RecentEntry entry;
    QString symbol; ///< where there is no picture
    bool isPlayPressed = false;
    bool isForgetHovered = false;
    // 0 to 1, and beyond where a spring carries them.
    double tint = 0; ///< under the pointer, or chosen by a key
    double playBadge = 0;
    double ring = 0;
    double playShift = 0; ///< of the badge that shakes, to the right
    double playOpacity = 1;

    static QRectF playBadgeRect(const QRectF &plate);
    static QRectF forgetRect(const QRectF &plate);

    void paint(QPainter &painter, const QRectF &plate, const ControlContext &context) const;

private:
    void paintTexts(QPainter &painter, const QRectF &plate, const ControlContext &context) const;
};

} // namespace ostrelle
