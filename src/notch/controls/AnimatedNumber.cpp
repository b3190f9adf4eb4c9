#include "notch/controls/AnimatedNumber.h"

#include "notch/NotchAppearance.h"
#include "records/Motion.h"

namespace ostrelle {

AnimatedNumber::AnimatedNumber(const ControlContext &context, double value, std::function<void()> changed,
                               double restThreshold)
    : m_appearance(context.appearance)
    , m_clock(context.clock)
    , m_changed(std::move(changed))
    , m_animated(value, restThreshold)
    , m_value(value)
{
}

AnimatedNumber::~AnimatedNumber()
{
    m_clock.remove(*this);
}

void AnimatedNumber::animateTo(double target, const Spring &spring)
{
    if (target == m_animated.target())
        return;
    if (m_appearance.reducesMotion()) {
        fadeTo(target, kReducedFade);
        return;
    }
    if (m_fade.isRunning) {
        m_fade.isRunning = false;
        m_animated.jumpTo(m_value);
    }
    m_animated.animateTo(target, spring, m_clock.now());
    m_clock.add(*this);
}

void AnimatedNumber::fadeTo(double target, std::chrono::nanoseconds duration)
{
    if (target == m_animated.target())
        return;
    m_animated.jumpTo(target);
    m_fade = {.isRunning = true, .from = m_value, .start = m_clock.now(), .duration = duration};
    m_clock.add(*this);
}

void AnimatedNumber::jumpTo(double value)
{
    m_fade.isRunning = false;
    m_animated.jumpTo(value);
    m_value = value;
}

bool AnimatedNumber::advance(MonotonicTime now)
{
    if (m_fade.isRunning) {
        const double passed = std::chrono::duration<double>(now - m_fade.start) / m_fade.duration;
        m_fade.isRunning = passed < 1;
        m_value = m_fade.isRunning ? m_fade.from + (m_animated.target() - m_fade.from) * Motion::easedOut(passed)
                                   : m_animated.target();
    } else {
        m_value = m_animated.value(now);
    }
    const bool moving = isMoving();
    m_changed();
    return moving;
}

} // namespace ostrelle
