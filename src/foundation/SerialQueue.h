#pragma once

#include <functional>
#include <memory>

namespace ostrelle {

/// One background thread that runs jobs in order; started with the first job, ended after a while without any. The
/// destructor waits for all jobs. post() and drain() from the main thread; a job gets no access to main-thread state
/// but what it was given.
class SerialQueue
{
public:
    SerialQueue();
    ~SerialQueue();
    SerialQueue(const SerialQueue &) = delete;
    SerialQueue &operator=(const SerialQueue &) = delete;

    void post(std::function<void()> job);
    /// Blocks until every job posted so far has run.
    void drain();

private:
    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace ostrelle
