#pragma once

#include "foundation/Task.h"
#include "foundation/TaskScheduler.h"

#include <QRectF>

#include <functional>
#include <optional>

namespace ostrelle {

class NotchViewModel;
class PanelHost;
class PointerNear;

/// Closes a panel that hovering opened, when the pointer has stayed away from it for more than 0.42 s. A panel that got
/// the keyboard meanwhile stays open. Main thread.
class HoverDismissWatch
{
public:
    /// What the watch asks of its owner at each look.
    struct Surroundings
    {
        std::function<bool()> isSuppressed;
        /// The area of the panel that accepts the pointer, in its coordinates.
        std::function<QRectF()> interactiveRect;
    };

    HoverDismissWatch(NotchViewModel &viewModel, TaskScheduler &scheduler, PanelHost &panelHost,
                      PointerNear &pointerNear, Surroundings surroundings);

    /// Watches anew; nothing unless the panel is open by hovering.
    void start();
    void cancel() { m_poll.cancel(); }

private:
    void look();
    bool isPaused() const;

    NotchViewModel &m_viewModel;
    TaskScheduler &m_scheduler;
    PanelHost &m_panelHost;
    PointerNear &m_pointerNear;
    Surroundings m_surroundings;
    std::optional<MonotonicTime> m_outsideSince;
    Task m_poll;
};

} // namespace ostrelle
