#include "notch/NotchViewModel.h"

#include "core/SettingsStore.h"
#include "foundation/PropertyUpdateGroup.h"
#include "foundation/TaskScheduler.h"
#include "platform/DragSense.h"
#include "platform/Haptics.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace ostrelle {

using namespace std::chrono_literals;

namespace {

constexpr auto kWatchdogInterval = 100ms;
constexpr auto kRoutingExitDelay = 170ms;
/// Keeps an absurd stored delay within the range of durations.
constexpr double kLongestHoverDelaySeconds = 24 * 3600;

} // namespace

/// One observable step. Inside it, derived values (geometry) are still those from before.
class NotchViewModel::Change
{
public:
    Change(NotchViewModel &model, SurfaceMotion motion)
        : m_restore(model.m_motion, motion)
    {
    }

private:
    struct Motion
    {
        Motion(SurfaceMotion &current, SurfaceMotion motion)
            : m_current(current)
            , m_previous(std::exchange(current, motion))
        {
        }
        ~Motion() { m_current = m_previous; }
        Motion(const Motion &) = delete;
        Motion &operator=(const Motion &) = delete;

        SurfaceMotion &m_current;
        SurfaceMotion m_previous;
    };

    // The group is left first, so that observers still find the motion.
    Motion m_restore;
    PropertyUpdateGroup m_group;
};

NotchViewModel::NotchViewModel(SettingsStore &settings, TaskScheduler &scheduler, DragSense &dragSense,
                               Haptics &haptics, QObject *parent)
    : QObject(parent)
    , m_settings(settings)
    , m_scheduler(scheduler)
    , m_dragSense(dragSense)
    , m_haptics(haptics)
{
    m_geometry.setBinding([this] {
        return NotchGeometry::compute({
            .phase = m_phase,
            .metrics = m_metrics,
            .showAutomatically = m_settings.bindableShowAutomatically().value(),
            .activeModuleCount = static_cast<int>(m_settings.bindableActiveModules().value().size()),
            .isDragCatchArmed = m_isDragCatchArmed,
            .dropTargetCount = static_cast<int>(m_dropTargets.value().size()),
            .selection = m_selection,
            .requestedContentHeight = m_requestedContentHeight,
        });
    });
}

void NotchViewModel::pointerEntered()
{
    if (m_phase != Phase::Idle || m_isDragCatchArmed)
        return;
    Q_EMIT aboutToOpen();
    {
        const Change change(*this, SurfaceMotion::Hover);
        m_phase = Phase::Hover;
    }
    scheduleHoverOpen();
}

void NotchViewModel::scheduleHoverOpen()
{
    m_hoverOpen.cancel();
    if (!dropTargets().isEmpty() || m_isDragCatchArmed)
        return;
    const double delay = m_settings.hoverOpenDelay();
    if (!(delay > 0))
        return;
    const std::chrono::duration<double> seconds(std::min(delay, kLongestHoverDelaySeconds));
    m_hoverOpen = m_scheduler.after(std::chrono::duration_cast<std::chrono::nanoseconds>(seconds), this, [this] {
        if (m_phase == Phase::Hover)
            Q_EMIT hoverOpenDue();
    });
}

void NotchViewModel::pointerExited()
{
    m_hoverOpen.cancel();
    if (m_phase == Phase::Hover) {
        const Change change(*this, SurfaceMotion::Hover);
        m_phase = Phase::Idle;
    } else if (m_phase == Phase::Expanded && m_openedByHover) {
        Q_EMIT hoverDismissWatchDue();
    }
}

void NotchViewModel::expand(std::optional<KestroModule> module, bool hoverInitiated)
{
    m_hoverOpen.cancel();
    m_openedByHover = hoverInitiated;
    const bool wasExpanded = m_phase == Phase::Expanded;
    if (!wasExpanded)
        Q_EMIT aboutToOpen();
    {
        const Change change(*this, SurfaceMotion::Surface);
        if (module) {
            // The new tool starts at the height that is shown, until it says what it wants.
            m_requestedContentHeight = wasExpanded ? std::optional(shownBodyHeight()) : std::nullopt;
        }
        m_dropTargets = QList<KestroModule>();
        m_hoveredDropZone = std::nullopt;
        m_phase = Phase::Expanded;
        m_selection = module;
    }
    if (!wasExpanded)
        tick();
}

void NotchViewModel::collapse()
{
    m_hoverOpen.cancel();
    m_openedByHover = false;
    if (m_phase == Phase::Idle)
        return;
    const Change change(*this, SurfaceMotion::Surface);
    m_phase = Phase::Idle;
    m_selection = std::nullopt;
    m_requestedContentHeight = std::nullopt;
    m_dropTargets = QList<KestroModule>();
    m_hoveredDropZone = std::nullopt;
}

void NotchViewModel::select(KestroModule module)
{
    {
        const Change change(*this, SurfaceMotion::Surface);
        m_requestedContentHeight = shownBodyHeight();
        m_selection = module;
    }
    tick();
}

void NotchViewModel::backToSelector()
{
    const Change change(*this, SurfaceMotion::Surface);
    m_selection = std::nullopt;
}

void NotchViewModel::setDragCatch(bool armed)
{
    if (armed == m_isDragCatchArmed)
        return;
    if (!armed && !dropTargets().isEmpty())
        return;
    {
        const Change change(*this, SurfaceMotion::Surface);
        m_isDragCatchArmed = armed;
    }
    if (armed) {
        watchDragCatch();
    } else {
        m_dragCatchWatchdog.cancel();
        endRouting(false);
    }
}

void NotchViewModel::watchDragCatch()
{
    m_catchRelease = DragRelease(m_scheduler.now());
    m_dragCatchWatchdog = m_scheduler.every(kWatchdogInterval, this, [this] {
        if (m_catchRelease.isOver(m_dragSense.isButtonHeld(), m_scheduler.now())) {
            endRouting(false);
            setDragCatch(false);
        }
    });
}

void NotchViewModel::beginRouting(const QList<KestroModule> &targets)
{
    m_hoverOpen.cancel();
    m_routingExit.cancel();
    if (targets == dropTargets())
        return;
    const bool wasExpanded = m_phase == Phase::Expanded;
    if (!wasExpanded)
        Q_EMIT aboutToOpen();
    {
        const Change change(*this, SurfaceMotion::Surface);
        m_dropTargets = targets;
        m_selection = std::nullopt;
        m_requestedContentHeight = std::nullopt;
        m_phase = Phase::Expanded;
    }
    if (!wasExpanded)
        tick();
}

void NotchViewModel::updateRouting(const QPointF &point)
{
    m_routingExit.cancel();
    std::optional<KestroModule> zone;
    for (auto it = m_dropZoneFrames.cbegin(); it != m_dropZoneFrames.cend() && !zone; ++it) {
        if (it.value().contains(point))
            zone = it.key();
    }
    if (zone == hoveredDropZone())
        return;
    {
        const Change change(*this, SurfaceMotion::Zone);
        m_hoveredDropZone = zone;
    }
    if (zone)
        tick();
}

void NotchViewModel::scheduleRoutingEnd()
{
    if (dropTargets().isEmpty())
        return;
    m_routingExit = m_scheduler.after(kRoutingExitDelay, this, [this] { endRouting(false); });
}

void NotchViewModel::endRouting(bool keepOpen)
{
    m_routingExit.cancel();
    if (dropTargets().isEmpty())
        return;
    m_dropZoneFrames.clear();
    const Change change(*this, SurfaceMotion::Surface);
    m_dropTargets = QList<KestroModule>();
    m_hoveredDropZone = std::nullopt;
    if (!keepOpen)
        m_phase = Phase::Idle;
}

void NotchViewModel::setMetrics(const NotchMetrics &metrics, SurfaceMotion motion)
{
    const Change change(*this, motion);
    m_metrics = metrics;
}

void NotchViewModel::setDropZoneFrames(const QMap<KestroModule, QRectF> &frames)
{
    m_dropZoneFrames = frames;
}

void NotchViewModel::setRequestedContentHeight(std::optional<double> height)
{
    const Change change(*this, SurfaceMotion::Surface);
    m_requestedContentHeight = height;
}

void NotchViewModel::keepOpen()
{
    m_openedByHover = false;
}

double NotchViewModel::shownBodyHeight() const
{
    const double body = geometry().contentSize.height() - metrics().topInset() - kSeamStripHeight;
    return std::max(body, 0.0);
}

void NotchViewModel::tick()
{
    if (m_settings.hapticFeedback())
        m_haptics.tick();
}

} // namespace ostrelle
