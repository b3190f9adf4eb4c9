#pragma once

#include <algorithm>

namespace ostrelle {

/// One picture giving way to the next. The old one is gone before the new one is clear, so that their words never
/// compete; both move the same way.
struct StepChange
{
    double progress = 1; ///< 0 the old one, 1 the new one; a spring may go beyond
    double travel = 16;  ///< logical pixels; 0 where nothing may move
    bool isBack = false; ///< mirrored

    double leavingX() const { return -direction() * travel * progress; }
    double enteringX() const { return direction() * travel * (1 - progress); }
    double leavingOpacity() const { return std::clamp(1 - progress / 0.6, 0.0, 1.0); }
    double enteringOpacity() const { return std::clamp((progress - 0.3) / 0.7, 0.0, 1.0); }

private:
    double direction() const { return isBack ? -1 : 1; }
};

} // namespace ostrelle
