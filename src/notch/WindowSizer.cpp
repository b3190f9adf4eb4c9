#include "notch/WindowSizer.h"

#include "foundation/TaskScheduler.h"

#include <chrono>
#include <utility>

namespace ostrelle {

namespace {

constexpr std::chrono::milliseconds kShrinkDelay{520};

} // namespace

WindowSizer::WindowSizer(TaskScheduler &scheduler, QObject &owner, SettledSize settledSize)
    : m_scheduler(scheduler)
    , m_owner(owner)
    , m_settledSize(std::move(settledSize))
    , m_size(QSizeF(0, 0))
{
}

void WindowSizer::request(const QSizeF &desired)
{
    m_shrink.cancel();
    m_size = size().expandedTo(desired);
    if (size() == desired)
        return;
    m_shrink = m_scheduler.after(kShrinkDelay, &m_owner, [this] {
        if (const std::optional<QSizeF> settled = m_settledSize())
            m_size = *settled;
    });
}

void WindowSizer::jumpTo(const QSizeF &size)
{
    m_shrink.cancel();
    m_size = size;
}

} // namespace ostrelle
