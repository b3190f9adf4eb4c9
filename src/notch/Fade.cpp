#include "notch/Fade.h"

#include "records/Motion.h"

namespace ostrelle {

void Fade::start(double from, double target, std::chrono::nanoseconds duration, MonotonicTime now)
{
    m_from = from;
    m_target = target;
    m_isRunning = true;
    m_start = now;
    m_duration = duration;
}

void Fade::jumpTo(double value)
{
    m_target = value;
    m_isRunning = false;
}

double Fade::value(MonotonicTime now)
{
    if (!m_isRunning)
        return m_target;
    const double passed = std::chrono::duration<double>(now - m_start) / m_duration;
    m_isRunning = passed < 1;
    return m_from + (m_target - m_from) * Motion::easedOut(passed);
}

} // namespace ostrelle
