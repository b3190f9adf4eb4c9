#pragma once

#include "foundation/Animated.h"
#include "notch/Fade.h"
#include "notch/FrameClock.h"
#include "notch/controls/ControlContext.h"

#include <functional>

namespace ostrelle {

/// A number that the frame clock moves and whose owner is told at every step. Main thread; after destruction nothing is
/// called.
class AnimatedNumber : private FrameClock::Client
{
public:
    /// An opacity is at rest within half of what a pixel can show.
    static constexpr double kOpacityRest = 1.0 / 510;

    AnimatedNumber(const ControlContext &context, double value, std::function<void()> changed,
                   double restThreshold = kOpacityRest);
    ~AnimatedNumber() override;
    AnimatedNumber(const AnimatedNumber &) = delete;
    AnimatedNumber &operator=(const AnimatedNumber &) = delete;

    double value() const { return m_value; }
    double target() const { return m_animated.target(); }
    bool isMoving() const { return m_animated.isMoving() || m_fade.isRunning(); }

    /// Moves on the spring or, where the desktop wants no movement, fades within kReducedFade.
    void animateTo(double target, const Spring &spring);
    /// Eases out.
    void fadeTo(double target, std::chrono::nanoseconds duration);
    /// `changed` is not called.
    void jumpTo(double value);

    static constexpr std::chrono::milliseconds kReducedFade{160};

private:
    bool advance(MonotonicTime now) override;

    NotchAppearance &m_appearance;
    FrameClock &m_clock;
    std::function<void()> m_changed;
    Animated<double> m_animated;
    Fade m_fade;
    double m_value;
};

} // namespace ostrelle
