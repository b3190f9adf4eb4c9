#pragma once

#include "foundation/Task.h"

#include <chrono>
#include <functional>

namespace ostrelle {

class TaskScheduler;

/// Tries again what could not be saved: 5 s after the failure, then after twice the time each, at the longest every 5
/// minutes, until saving works. Main thread.
class SaveRetry
{
public:
    SaveRetry(TaskScheduler &scheduler, std::function<void()> retry);

    void follow(bool isFailing);

private:
    void wait(std::chrono::nanoseconds delay);

    TaskScheduler &m_scheduler;
    std::function<void()> m_retry;
    Task m_task;
};

} // namespace ostrelle
