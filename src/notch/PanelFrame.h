#pragma once

#include "foundation/Animated.h"
#include "notch/NotchGeometry.h"
#include "notch/NotchPhase.h"

namespace ostrelle {

/// Everything of the panel that one spring moves. Lengths are logical pixels.
struct PanelFrame
{
    double width = 0;
    double height = 0;
    double bottomRadius = 0;
    double topRadius = 0;
    double expansion = 0;   ///< of the glass, 0 to 1
    double openness = 0;    ///< of the tool strip: 0 marks, 1 tiles
    double stripCentre = 0; ///< from the panel's top

    /// Openness from which contentOpacity() rises.
    static constexpr double kContentStart = 0.45;

    /// Where the panel rests in this state. `pixelRatio` keeps the marks on whole device pixels.
    static PanelFrame atRest(const NotchGeometry &geometry, Phase phase, bool hasTool, double pixelRatio);

    /// Opacity of plates, captions and whatever else only the open panel shows.
    double contentOpacity() const;

    friend bool operator==(const PanelFrame &, const PanelFrame &) = default;
};

template <>
struct AnimatedTraits<PanelFrame>
{
    static constexpr std::size_t kComponents = 7;
    static std::array<double, kComponents> split(const PanelFrame &frame);
    static PanelFrame join(const std::array<double, kComponents> &parts);
};

} // namespace ostrelle
