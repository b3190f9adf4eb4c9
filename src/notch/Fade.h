#pragma once

#include "foundation/TaskScheduler.h"

#include <chrono>

namespace ostrelle {

/// A number that eases out to its target within a given time. It holds state only while it runs and has no clock of its
/// own.
class Fade
{
public:
    explicit Fade(double value)
        : m_from(value)
        , m_target(value)
    {
    }

    double target() const { return m_target; }
    bool isRunning() const { return m_isRunning; }

    void start(double from, double target, std::chrono::nanoseconds duration, MonotonicTime now);
    /// Takes `value` at once and rests.
    void jumpTo(double value);
    /// The number at `now`; comes to rest exactly on the target.
    double value(MonotonicTime now);

private:
    double m_from;
    double m_target;
    bool m_isRunning = false;
    MonotonicTime m_start{};
    std::chrono::nanoseconds m_duration{};
};

} // namespace ostrelle
