#include "notch/DragWatch.h"

#include "core/SettingsStore.h"
#include "foundation/TaskScheduler.h"
#include "notch/NotchViewModel.h"
#include "platform/DragSense.h"

#include <chrono>

namespace ostrelle {

namespace {

constexpr std::chrono::milliseconds kPollInterval{90};

} // namespace

DragWatch::DragWatch(NotchViewModel &viewModel, SettingsStore &settings, TaskScheduler &scheduler, DragSense &dragSense)
    : m_viewModel(viewModel)
    , m_settings(settings)
    , m_scheduler(scheduler)
    , m_dragSense(dragSense)
{
    QObject::connect(&dragSense, &DragSense::changed, &m_changes, [this] {
        if (m_poll.isPending())
            notice(m_dragSense.isButtonHeld());
    });
}

void DragWatch::begin()
{
    m_poll.cancel();
    if (!m_settings.catchDraggedFiles())
        return;
    // The press is told late on a busy machine, when the drag may have begun.
    m_countAtPress = m_dragSense.countAtPress();
    m_release = DragRelease(m_scheduler.now());
    m_poll = m_scheduler.every(kPollInterval, &m_viewModel, [this] { look(); });
    if (m_dragSense.changeCount() != m_countAtPress)
        notice(m_dragSense.isButtonHeld());
}

void DragWatch::look()
{
    const Answer held = m_dragSense.isButtonHeld();
    if (m_release.isOver(held, m_scheduler.now())) {
        m_poll.cancel();
        m_viewModel.setDragCatch(false);
    } else {
        notice(held);
    }
}

void DragWatch::notice(Answer held)
{
    if (held != Answer::No && m_dragSense.changeCount() != m_countAtPress)
        m_viewModel.setDragCatch(true);
}

} // namespace ostrelle
