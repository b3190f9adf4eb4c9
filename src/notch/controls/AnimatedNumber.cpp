#include "notch/controls/AnimatedNumber.h"

#include "notch/NotchAppearance.h"

namespace ostrelle {

AnimatedNumber::AnimatedNumber(const ControlContext &context, double value, std::function<void()> changed,
                               double restThreshold)
    : m_appearance(context.appearance)
    , m_clock(context.clock)
    , m_changed(std::move(changed))
    , m_animated(value, restThreshold)
    , m_fade(value)
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
    if (m_fade.isRunning()) {
        m_fade.jumpTo(target);
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
    m_fade.start(m_value, target, duration, m_clock.now());
    m_clock.add(*this);
}

void AnimatedNumber::jumpTo(double value)
{
    m_fade.jumpTo(value);
    m_animated.jumpTo(value);
    m_value = value;
}

bool AnimatedNumber::advance(MonotonicTime now)
{
    m_value = m_fade.isRunning() ? m_fade.value(now) : m_animated.value(now);
    const bool moving = isMoving();
    m_changed();
    return moving;
}

} // namespace ostrelle
