#include "foundation/SaveRetry.h"

#include "foundation/TaskScheduler.h"

#include <algorithm>
#include <utility>

namespace ostrelle {
namespace {

using namespace std::chrono_literals;

constexpr std::chrono::nanoseconds kFirstDelay = 5s;
constexpr std::chrono::nanoseconds kLongestDelay = 5min;

} // namespace

SaveRetry::SaveRetry(TaskScheduler &scheduler, std::function<void()> retry)
    : m_scheduler(scheduler)
    , m_retry(std::move(retry))
{
}

void SaveRetry::follow(bool isFailing)
{
    m_task.cancel();
    if (isFailing)
        wait(kFirstDelay);
}

void SaveRetry::wait(std::chrono::nanoseconds delay)
{
    m_task = m_scheduler.after(delay, nullptr, [this, delay] {
        m_retry();
        wait(std::min(2 * delay, kLongestDelay));
    });
}

} // namespace ostrelle
