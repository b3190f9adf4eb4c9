#pragma once

#include <QMap>
#include <QSizeF>
#include <QString>

namespace ostrelle {

struct Screen;

/// Geometry of the top edge of one screen, logical pixels.
struct NotchMetrics
{
    bool hasHardwareNotch = false;
    QSizeF hardwareNotchSize{0, 0}; ///< (0, 0) without one
    double menuBarHeight = 24;

    /// From the screen and the notches that the user declared for outputs (defaults key display.notch).
    static NotchMetrics measure(const Screen &screen, const QMap<QString, QSizeF> &declaredNotches);

    double topInset() const { return hasHardwareNotch ? hardwareNotchSize.height() : menuBarHeight; }

    friend bool operator==(const NotchMetrics &, const NotchMetrics &) = default;
};

} // namespace ostrelle
