#pragma once

#include "foundation/Spring.h"
#include "foundation/TaskScheduler.h"

#include <array>
#include <cstddef>

namespace ostrelle {

/// How a value type becomes numbers for the spring. Specialise for further types.
template <typename T>
struct AnimatedTraits;

template <>
struct AnimatedTraits<double>
{
    static constexpr std::size_t kComponents = 1;
    static std::array<double, 1> split(double value) { return {value}; }
    static double join(const std::array<double, 1> &parts) { return parts[0]; }
};

/// A value that moves to its target on a spring. Retargeting in mid-motion keeps position and velocity. It holds state
/// only while it moves, has no clock of its own, and is at rest when every component's distance and velocity (per
/// second) are below `restThreshold` (in the value's unit: a device pixel, 1/255 of an opacity).
template <typename T>
class Animated
{
public:
    using Traits = AnimatedTraits<T>;

    explicit Animated(T value, double restThreshold)
        : m_target(value)
        , m_restThreshold(restThreshold)
    {
    }

    const T &target() const { return m_target; }
    bool isMoving() const { return m_moving; }

    /// Moves to `target` from where the value is at `now`.
    void animateTo(const T &target, const Spring &spring, MonotonicTime now);
    /// Takes `value` at once and rests.
    void jumpTo(const T &value);
    /// The value at `now`; comes to rest exactly on the target.
    T value(MonotonicTime now);

private:
    using States = std::array<Spring::State, Traits::kComponents>;

    States statesAt(MonotonicTime now) const;

    T m_target;
    double m_restThreshold;
    bool m_moving = false;
    Spring m_spring;
    MonotonicTime m_start{};
    States m_startStates{};
};

template <typename T>
typename Animated<T>::States Animated<T>::statesAt(MonotonicTime now) const
{
    States states{};
    if (!m_moving)
        return states;
    const double seconds = std::chrono::duration<double>(now - m_start).count();
    for (std::size_t i = 0; i < states.size(); ++i)
        states[i] = m_spring.advanced(m_startStates[i], seconds > 0 ? seconds : 0);
    return states;
}

template <typename T>
void Animated<T>::animateTo(const T &target, const Spring &spring, MonotonicTime now)
{
    States states = statesAt(now);
    const auto from = Traits::split(m_target);
    const auto to = Traits::split(target);
    for (std::size_t i = 0; i < states.size(); ++i)
        states[i].displacement += from[i] - to[i];
    m_target = target;
    m_spring = spring;
    m_start = now;
    m_startStates = states;
    m_moving = true;
    value(now);
}

template <typename T>
void Animated<T>::jumpTo(const T &value)
{
    m_target = value;
    m_moving = false;
}

template <typename T>
T Animated<T>::value(MonotonicTime now)
{
    if (!m_moving)
        return m_target;
    const States states = statesAt(now);
    auto parts = Traits::split(m_target);
    bool resting = true;
    for (std::size_t i = 0; i < states.size(); ++i) {
        parts[i] += states[i].displacement;
        const auto isSmall = [this](double x) { return x < m_restThreshold && x > -m_restThreshold; };
        resting = resting && isSmall(states[i].displacement) && isSmall(states[i].velocity);
    }
    if (resting) {
        m_moving = false;
        return m_target;
    }
    return Traits::join(parts);
}

} // namespace ostrelle
