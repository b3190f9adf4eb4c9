#pragma once

#include "foundation/Task.h"

#include <chrono>
#include <functional>

class QObject;

namespace ostrelle {

/// A point on the monotonic clock, since an arbitrary origin.
using MonotonicTime = std::chrono::nanoseconds;

/// The only source of time and of timed work. Everything runs on the main thread.
///
/// A task holds `owner` weakly: when it is gone, nothing is called; without an owner only the handle keeps the task. A
/// task may cancel itself, or be replaced, from inside its own work. An interval's next deadline is one interval after
/// the start of the wait, as with a sleeping loop.
class TaskScheduler
{
public:
    using Work = std::function<void()>;

    virtual ~TaskScheduler() = default;

    virtual MonotonicTime now() const = 0;
    /// Runs `work` once, `delay` from now; never before the caller returned to the event loop, also for zero.
    virtual Task after(std::chrono::nanoseconds delay, QObject *owner, Work work) = 0;
    /// Runs `work` every `interval` until the task is cancelled.
    virtual Task every(std::chrono::nanoseconds interval, QObject *owner, Work work) = 0;
};

} // namespace ostrelle
