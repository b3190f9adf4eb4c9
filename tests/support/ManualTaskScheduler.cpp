#include "support/ManualTaskScheduler.h"

#include <QObject>
#include <QPointer>

#include <algorithm>
#include <utility>

namespace ostrelle {

struct ManualTaskScheduler::Job
{
    MonotonicTime deadline;
    std::optional<std::chrono::nanoseconds> interval;
    bool hasOwner = false;
    QPointer<QObject> owner;
    Work work;
    bool isLive = true;

    bool isPending() const { return isLive && (!hasOwner || owner); }
};

class ManualTaskScheduler::Handle final : public Task::Entry
{
public:
    explicit Handle(SharedJob job)
        : m_job(std::move(job))
    {
    }
    ~Handle() override { m_job->isLive = false; }
    Handle(const Handle &) = delete;
    Handle &operator=(const Handle &) = delete;

    bool isPending() const override { return m_job->isPending(); }

private:
    SharedJob m_job;
};

ManualTaskScheduler::ManualTaskScheduler() = default;
ManualTaskScheduler::~ManualTaskScheduler() = default;

Task ManualTaskScheduler::after(std::chrono::nanoseconds delay, QObject *owner, Work work)
{
    return add(std::make_shared<Job>(Job{m_now + delay, std::nullopt, owner != nullptr, owner, std::move(work)}));
}

Task ManualTaskScheduler::every(std::chrono::nanoseconds interval, QObject *owner, Work work)
{
    return add(std::make_shared<Job>(Job{m_now + interval, interval, owner != nullptr, owner, std::move(work)}));
}

void ManualTaskScheduler::advance(std::chrono::nanoseconds duration)
{
    const MonotonicTime end = m_now + duration;
    for (auto due = dueJobs(end); !due.empty(); due = dueJobs(end)) {
        m_now = std::max(m_now, due.front()->deadline);
        fire(*due.front());
    }
    m_now = end;
}

void ManualTaskScheduler::jump(std::chrono::nanoseconds duration)
{
    m_now += duration;
    for (const SharedJob &job : dueJobs(m_now)) {
        if (job->isPending())
            fire(*job);
    }
}

int ManualTaskScheduler::pendingCount() const
{
    return static_cast<int>(dueJobs(MonotonicTime::max()).size());
}

std::optional<MonotonicTime> ManualTaskScheduler::nextDeadline() const
{
    const auto due = dueJobs(MonotonicTime::max());
    return due.empty() ? std::nullopt : std::optional(due.front()->deadline);
}

Task ManualTaskScheduler::add(SharedJob job)
{
    std::erase_if(m_jobs, [](const std::weak_ptr<Job> &known) { return known.expired(); });
    m_jobs.push_back(job);
    return Task(std::make_unique<Handle>(std::move(job)));
}

/// In the order of their deadlines; equal ones in the order of their start.
std::vector<ManualTaskScheduler::SharedJob> ManualTaskScheduler::dueJobs(MonotonicTime until) const
{
    std::vector<SharedJob> due;
    for (const std::weak_ptr<Job> &known : m_jobs) {
        SharedJob job = known.lock();
        if (job && job->isPending() && job->deadline <= until)
            due.push_back(std::move(job));
    }
    std::ranges::stable_sort(due, {}, &Job::deadline);
    return due;
}

void ManualTaskScheduler::fire(Job &job)
{
    ++m_firedCount;
    job.isLive = job.interval.has_value();
    if (job.interval)
        job.deadline = m_now + *job.interval;
    const Work work = job.work;
    work();
}

} // namespace ostrelle
