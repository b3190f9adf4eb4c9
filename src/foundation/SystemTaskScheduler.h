#pragma once

#include "foundation/TaskScheduler.h"

namespace ostrelle {

/// The scheduler of the running program: precise timers of the Qt event loop on the steady clock.
class SystemTaskScheduler final : public TaskScheduler
{
public:
    MonotonicTime now() const override;
    Task after(std::chrono::nanoseconds delay, QObject *owner, Work work) override;
    Task every(std::chrono::nanoseconds interval, QObject *owner, Work work) override;
};

} // namespace ostrelle
