#include "notch/PanelFrame.h"

#include "notch/ModuleChromeMetrics.h"

#include <algorithm>
#include <cmath>

namespace ostrelle {
namespace {

struct Look
{
    double expansion;
    double bottomRadius;
    double topRadius;
};

constexpr Look lookOf(Phase phase)
{
    switch (phase) {
    case Phase::Idle:
        return {.expansion = 0, .bottomRadius = 11, .topRadius = 7};
    case Phase::Hover:
        return {.expansion = 0.16, .bottomRadius = 13, .topRadius = 8};
    case Phase::Expanded:
        break;
    }
    return {.expansion = 1, .bottomRadius = 26, .topRadius = 12};
}

/// A fraction counts as much as this many pixels, so that one threshold of rest serves both.
constexpr double kFractionWeight = 64;

constexpr double kContentSpan = 0.45;

} // namespace

PanelFrame PanelFrame::atRest(const NotchGeometry &geometry, Phase phase, bool hasTool, double pixelRatio)
{
    const Look look = lookOf(phase);
    const bool expanded = phase == Phase::Expanded;
    const double inset = geometry.contentTopInset;
    double centre = inset + (geometry.contentSize.height() - inset) / 2;
    if (expanded)
        centre = inset + (hasTool ? chrome::kHeaderHeight + chrome::kStripHeight / 2 : chrome::kSelectorHeight / 2);
    return {.width = geometry.contentSize.width(),
            .height = geometry.contentSize.height(),
            .bottomRadius = look.bottomRadius,
            .topRadius = look.topRadius,
            .expansion = look.expansion,
            .openness = expanded ? 1.0 : 0.0,
            .stripCentre = std::round(centre * pixelRatio) / pixelRatio};
}

double PanelFrame::contentOpacity() const
{
    return std::clamp((openness - kContentStart) / kContentSpan, 0.0, 1.0);
}

std::array<double, 7> AnimatedTraits<PanelFrame>::split(const PanelFrame &frame)
{
    return {frame.width,
            frame.height,
            frame.bottomRadius,
            frame.topRadius,
            frame.expansion * kFractionWeight,
            frame.openness * kFractionWeight,
            frame.stripCentre};
}

PanelFrame AnimatedTraits<PanelFrame>::join(const std::array<double, 7> &parts)
{
    return {.width = parts[0],
            .height = parts[1],
            .bottomRadius = parts[2],
            .topRadius = parts[3],
            .expansion = parts[4] / kFractionWeight,
            .openness = parts[5] / kFractionWeight,
            .stripCentre = parts[6]};
}

} // namespace ostrelle
