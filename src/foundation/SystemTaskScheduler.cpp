#include "foundation/SystemTaskScheduler.h"

#include <QBasicTimer>
#include <QObject>

#include <algorithm>
#include <limits>
#include <memory>
#include <utility>

namespace ostrelle {
namespace {

enum class Repetition { Once, Interval };

/// One wait at a time: an interval starts its next wait when its work has returned, so nested event loops inside the
/// work do not start it again.
class Wait final : public QObject
{
public:
    Wait(std::chrono::nanoseconds delay, Repetition repetition, QObject *owner, TaskScheduler::Work work)
        : m_delay(delay)
        , m_repetition(repetition)
        , m_work(std::move(work))
    {
        if (owner)
            connect(owner, &QObject::destroyed, this, &Wait::stop);
        start();
    }

    bool isPending() const { return m_pending; }

    /// Ends the wait. While the work runs, the object has to outlive it and then owns itself.
    static void release(std::unique_ptr<Wait> wait)
    {
        Wait &self = *wait;
        self.stop();
        if (self.m_running)
            self.m_self = std::move(wait);
    }

protected:
    void timerEvent(QTimerEvent *) override
    {
        m_timer.stop();
        m_pending = m_repetition == Repetition::Interval;
        TaskScheduler::Work work = std::exchange(m_work, nullptr);
        m_running = true;
        work();
        m_running = false;
        if (m_pending) {
            m_work = std::move(work);
            start();
        }
        const std::unique_ptr<Wait> releasedMeanwhile = std::move(m_self);
    }

private:
    void start()
    {
        using Milliseconds = std::chrono::milliseconds;
        const Milliseconds::rep wanted = std::chrono::ceil<Milliseconds>(m_delay).count();
        const auto longest = static_cast<Milliseconds::rep>(std::numeric_limits<int>::max());
        m_timer.start(static_cast<int>(std::clamp<Milliseconds::rep>(wanted, 0, longest)), Qt::PreciseTimer, this);
        m_pending = true;
    }

    void stop()
    {
        m_timer.stop();
        m_pending = false;
    }

    const std::chrono::nanoseconds m_delay;
    const Repetition m_repetition;
    TaskScheduler::Work m_work;
    QBasicTimer m_timer;
    bool m_pending = false;
    bool m_running = false;
    std::unique_ptr<Wait> m_self;
};

class WaitEntry final : public Task::Entry
{
public:
    explicit WaitEntry(std::unique_ptr<Wait> wait)
        : m_wait(std::move(wait))
    {
    }
    ~WaitEntry() override { Wait::release(std::move(m_wait)); }
    WaitEntry(const WaitEntry &) = delete;
    WaitEntry &operator=(const WaitEntry &) = delete;

    bool isPending() const override { return m_wait->isPending(); }

private:
    std::unique_ptr<Wait> m_wait;
};

Task makeTask(std::chrono::nanoseconds delay, Repetition repetition, QObject *owner, TaskScheduler::Work work)
{
    return Task(std::make_unique<WaitEntry>(std::make_unique<Wait>(delay, repetition, owner, std::move(work))));
}

} // namespace

MonotonicTime SystemTaskScheduler::now() const
{
    return std::chrono::steady_clock::now().time_since_epoch();
}

Task SystemTaskScheduler::after(std::chrono::nanoseconds delay, QObject *owner, Work work)
{
    return makeTask(delay, Repetition::Once, owner, std::move(work));
}

Task SystemTaskScheduler::every(std::chrono::nanoseconds interval, QObject *owner, Work work)
{
    return makeTask(interval, Repetition::Interval, owner, std::move(work));
}

} // namespace ostrelle
