#pragma once

#include "notch/NotchMetrics.h"
#include "notch/NotchPhase.h"
#include "records/KestroModule.h"

#include <QSizeF>

#include <optional>

namespace ostrelle {

/// Everything that the sizes of the notch depend on.
struct GeometryInput
{
    Phase phase = Phase::Idle;
    NotchMetrics metrics = {};
    bool showAutomatically = true;
    int activeModuleCount = 6;
    bool isDragCatchArmed = false;
    int dropTargetCount = 0;
    std::optional<KestroModule> selection = {};
    std::optional<double> requestedContentHeight = {};

    friend bool operator==(const GeometryInput &, const GeometryInput &) = default;
};

/// Every size of the notch in one state, logical pixels.
struct NotchGeometry
{
    QSizeF idleSize;
    QSizeF contentSize;     ///< the visible surface
    QSizeF interactionSize; ///< what accepts the pointer
    QSizeF catchArea;       ///< what receives drops
    double contentTopInset = 0;
    QSizeF windowSize; ///< the panel window that holds it

    static NotchGeometry compute(const GeometryInput &input);

    friend bool operator==(const NotchGeometry &, const NotchGeometry &) = default;
};

/// The height limits of a tool's body.
double minimumBodyHeight();
double maximumBodyHeight(KestroModule module);
/// Below the body of a tool or the selector lies the seam's strip.
inline constexpr double kSeamStripHeight = 18;

} // namespace ostrelle
