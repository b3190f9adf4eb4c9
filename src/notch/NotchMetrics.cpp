#include "notch/NotchMetrics.h"

#include "platform/Screens.h"

#include <algorithm>

namespace ostrelle {

namespace {

constexpr double kMinimumBarHeight = 24;
constexpr double kMinimumNotchWidth = 140;

} // namespace

NotchMetrics NotchMetrics::measure(const Screen &screen, const QMap<QString, QSizeF> &declaredNotches)
{
    NotchMetrics metrics;
    metrics.menuBarHeight = std::max(screen.topBarHeight, kMinimumBarHeight);

    const QSizeF declared = declaredNotches.value(screen.name).boundedTo(screen.frame.size());
    if (declared.height() > 0) {
        metrics.hasHardwareNotch = true;
        metrics.hardwareNotchSize = {std::max(declared.width(), kMinimumNotchWidth), declared.height()};
        metrics.menuBarHeight = std::max(metrics.menuBarHeight, declared.height());
    }
    return metrics;
}

} // namespace ostrelle
