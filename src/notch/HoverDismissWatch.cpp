#include "notch/HoverDismissWatch.h"

#include "notch/NotchViewModel.h"
#include "platform/PanelHost.h"
#include "platform/PointerNear.h"

#include <chrono>
#include <utility>

namespace ostrelle {

namespace {

constexpr std::chrono::milliseconds kPollInterval{120};
constexpr std::chrono::milliseconds kPatience{420};
/// The pointer counts as inside this far around the surface.
constexpr double kMargin = 10;

} // namespace

HoverDismissWatch::HoverDismissWatch(NotchViewModel &viewModel, TaskScheduler &scheduler, PanelHost &panelHost,
                                     PointerNear &pointerNear, Surroundings surroundings)
    : m_viewModel(viewModel)
    , m_scheduler(scheduler)
    , m_panelHost(panelHost)
    , m_pointerNear(pointerNear)
    , m_surroundings(std::move(surroundings))
{
}

void HoverDismissWatch::start()
{
    m_poll.cancel();
    m_outsideSince.reset();
    if (m_viewModel.phase() == Phase::Expanded && m_viewModel.openedByHover())
        m_poll = m_scheduler.every(kPollInterval, &m_viewModel, [this] { look(); });
}

void HoverDismissWatch::look()
{
    if (m_viewModel.phase() != Phase::Expanded || !m_viewModel.openedByHover()) {
        m_poll.cancel();
        return;
    }
    if (m_panelHost.hasKeyboard()) {
        m_viewModel.keepOpen();
        m_poll.cancel();
        return;
    }
    const QRectF safe = m_surroundings.interactiveRect().adjusted(-kMargin, -kMargin, kMargin, kMargin);
    if (isPaused() || m_pointerNear.isWithin(safe) != Answer::No) {
        m_outsideSince.reset();
        return;
    }
    const MonotonicTime now = m_scheduler.now();
    if (!m_outsideSince)
        m_outsideSince = now;
    if (now - *m_outsideSince > kPatience) {
        m_poll.cancel();
        m_viewModel.collapse();
    }
}

bool HoverDismissWatch::isPaused() const
{
    return m_surroundings.isSuppressed() || !m_viewModel.dropTargets().isEmpty() || m_viewModel.isDragCatchArmed();
}

} // namespace ostrelle
