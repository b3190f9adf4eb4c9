#pragma once

#include "notch/controls/AnimatedNumber.h"

#include <functional>

namespace ostrelle {

/// A short shake that says no. Main thread; after destruction nothing is called.
class Shake
{
public:
    /// `changed` is called at every step.
    Shake(const ControlContext &context, std::function<void()> changed);

    void start();
    /// To the right, logical pixels; always 0 where the desktop wants no movement.
    double offset() const;
    /// 1, or less for a moment where the desktop wants no movement.
    double opacity() const;

private:
    ControlContext m_context;
    AnimatedNumber m_left; ///< 1 at the beginning, 0 at the end
};

} // namespace ostrelle
