#include "foundation/SerialQueue.h"

#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <utility>

namespace ostrelle {
namespace {

constexpr std::chrono::seconds kIdleLife(5);

} // namespace

/// `mutex` guards everything but `worker`, which only the posting thread touches.
struct SerialQueue::State
{
    std::mutex mutex;
    std::condition_variable posted;
    std::condition_variable idle;
    std::deque<std::function<void()>> jobs;
    bool hasWorker = false;
    bool isBusy = false;
    bool isClosing = false;
    std::thread worker;

    bool hasWork() const { return isBusy || !jobs.empty(); }
    void work();
};

void SerialQueue::State::work()
{
    std::unique_lock lock(mutex);
    while (posted.wait_for(lock, kIdleLife, [this] { return isClosing || !jobs.empty(); }) && !jobs.empty()) {
        std::function<void()> job = std::move(jobs.front());
        jobs.pop_front();
        isBusy = true;
        lock.unlock();
        job();
        job = nullptr;
        lock.lock();
        isBusy = false;
        if (jobs.empty())
            idle.notify_all();
    }
    hasWorker = false;
}

SerialQueue::SerialQueue()
    : m_state(std::make_unique<State>())
{
}

SerialQueue::~SerialQueue()
{
    {
        const std::lock_guard lock(m_state->mutex);
        m_state->isClosing = true;
    }
    m_state->posted.notify_one();
    if (m_state->worker.joinable())
        m_state->worker.join();
}

void SerialQueue::post(std::function<void()> job)
{
    std::unique_lock lock(m_state->mutex);
    m_state->jobs.push_back(std::move(job));
    if (std::exchange(m_state->hasWorker, true)) {
        lock.unlock();
        m_state->posted.notify_one();
        return;
    }
    // An idle worker that ended takes the lock no more, so joining it here does not wait for anything.
    if (m_state->worker.joinable())
        m_state->worker.join();
    m_state->worker = std::thread([state = m_state.get()] { state->work(); });
}

void SerialQueue::drain()
{
    std::unique_lock lock(m_state->mutex);
    m_state->idle.wait(lock, [this] { return !m_state->hasWork(); });
}

} // namespace ostrelle
