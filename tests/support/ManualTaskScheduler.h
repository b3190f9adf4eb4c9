#pragma once

#include "foundation/TaskScheduler.h"

#include <optional>
#include <vector>

namespace ostrelle {

/// A scheduler whose clock stands still until the test moves it.
class ManualTaskScheduler final : public TaskScheduler
{
public:
    ManualTaskScheduler();
    ~ManualTaskScheduler() override;

    MonotonicTime now() const override { return m_now; }
    Task after(std::chrono::nanoseconds delay, QObject *owner, Work work) override;
    Task every(std::chrono::nanoseconds interval, QObject *owner, Work work) override;

    /// Walks: every deadline up to `duration` from now is delivered at its own time, in order, also those that come up
    /// on the way.
    void advance(std::chrono::nanoseconds duration);
    /// As after a suspension: the clock stands at the end at once, and what is overdue then is delivered once.
    void jump(std::chrono::nanoseconds duration);

    /// How often work ran, ever: the wake-ups of a process.
    int firedCount() const { return m_firedCount; }
    int pendingCount() const;
    /// When the next work is due.
    std::optional<MonotonicTime> nextDeadline() const;

private:
    struct Job;
    class Handle;
    // Shared, because a job that cancels itself has to outlive its own work, and a handle may outlive the scheduler.
    using SharedJob = std::shared_ptr<Job>;

    Task add(SharedJob job);
    std::vector<SharedJob> dueJobs(MonotonicTime until) const;
    void fire(Job &job);

    MonotonicTime m_now = std::chrono::hours(1);
    int m_firedCount = 0;
    std::vector<std::weak_ptr<Job>> m_jobs;
};

} // namespace ostrelle
