#include "notch/NotchViewModel.h"

#include "core/SettingsStore.h"
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

/// One observable step: `state` is changed freely and shown to observers as a whole at the end. Inside it, what the
/// view model answers is still from before.
class NotchViewModel::Change
{
public:
    Change(NotchViewModel &model, SurfaceMotion motion)
        : state(model.m_state)
        , m_model(model)
        , m_previousMotion(std::exchange(model.m_motion, motion))
    {
    }
    ~Change()
    {
        m_model.m_state = state;
        m_model.m_motion = m_previousMotion;
    }
    Change(const Change &) = delete;
    Change &operator=(const Change &) = delete;

    State state;

private:
    NotchViewModel &m_model;
    SurfaceMotion m_previousMotion;
};

NotchViewModel::NotchViewModel(SettingsStore &settings, TaskScheduler &scheduler, DragSense &dragSense,
                               Haptics &haptics, QObject *parent)
    : QObject(parent)
    , m_settings(settings)
    , m_scheduler(scheduler)
    , m_dragSense(dragSense)
    , m_haptics(haptics)
{
    m_phase.setBinding([this] { return m_state.value().phase; });
    m_selection.setBinding([this] { return m_state.value().selection; });
    m_metrics.setBinding([this] { return m_state.value().metrics; });
    m_dropTargets.setBinding([this] { return m_state.value().dropTargets; });
    m_hoveredDropZone.setBinding([this] { return m_state.value().hoveredDropZone; });
    m_isDragCatchArmed.setBinding([this] { return m_state.value().isDragCatchArmed; });
    m_geometry.setBinding([this] {
        const State &state = m_state.value();
        return NotchGeometry::compute({
            .phase = state.phase,
            .metrics = state.metrics,
            .showAutomatically = m_settings.bindableShowAutomatically().value(),
            .activeModuleCount = static_cast<int>(m_settings.bindableActiveModules().value().size()),
            .isDragCatchArmed = state.isDragCatchArmed,
            .dropTargetCount = static_cast<int>(state.dropTargets.size()),
            .selection = state.selection,
            .requestedContentHeight = state.requestedContentHeight,
        });
    });
}

void NotchViewModel::pointerEntered()
{
    if (phase() != Phase::Idle || isDragCatchArmed())
        return;
    Q_EMIT aboutToOpen();
    {
        Change change(*this, SurfaceMotion::Hover);
        change.state.phase = Phase::Hover;
    }
    scheduleHoverOpen();
}

void NotchViewModel::scheduleHoverOpen()
{
    m_hoverOpen.cancel();
    if (!dropTargets().isEmpty() || isDragCatchArmed())
        return;
    const double delay = m_settings.hoverOpenDelay();
    if (!(delay > 0))
        return;
    const std::chrono::duration<double> seconds(std::min(delay, kLongestHoverDelaySeconds));
    m_hoverOpen = m_scheduler.after(std::chrono::duration_cast<std::chrono::nanoseconds>(seconds), this, [this] {
        if (phase() == Phase::Hover)
            Q_EMIT hoverOpenDue();
    });
}

void NotchViewModel::pointerExited()
{
    m_hoverOpen.cancel();
    if (phase() == Phase::Hover) {
        Change change(*this, SurfaceMotion::Hover);
        change.state.phase = Phase::Idle;
    } else if (phase() == Phase::Expanded && m_openedByHover) {
        Q_EMIT hoverDismissWatchDue();
    }
}

void NotchViewModel::expand(std::optional<KestroModule> module, bool hoverInitiated)
{
    m_hoverOpen.cancel();
    m_openedByHover = hoverInitiated;
    const bool wasExpanded = phase() == Phase::Expanded;
    if (!wasExpanded)
        Q_EMIT aboutToOpen();
    {
        Change change(*this, SurfaceMotion::Surface);
        if (module) {
            // The new tool starts at the height that is shown, until it says what it wants.
            change.state.requestedContentHeight = wasExpanded ? std::optional(shownBodyHeight()) : std::nullopt;
        }
        change.state.dropTargets.clear();
        change.state.hoveredDropZone.reset();
        change.state.phase = Phase::Expanded;
        change.state.selection = module;
    }
    if (!wasExpanded)
        m_haptics.tick();
}

void NotchViewModel::collapse()
{
    m_hoverOpen.cancel();
    m_openedByHover = false;
    if (phase() == Phase::Idle)
        return;
    Change change(*this, SurfaceMotion::Surface);
    change.state.phase = Phase::Idle;
    change.state.selection.reset();
    change.state.requestedContentHeight.reset();
    change.state.dropTargets.clear();
    change.state.hoveredDropZone.reset();
}

void NotchViewModel::select(KestroModule module)
{
    {
        Change change(*this, SurfaceMotion::Surface);
        change.state.requestedContentHeight = shownBodyHeight();
        change.state.selection = module;
    }
    m_haptics.tick();
}

void NotchViewModel::backToSelector()
{
    Change change(*this, SurfaceMotion::Surface);
    change.state.selection.reset();
}

void NotchViewModel::setDragCatch(bool armed)
{
    if (armed == isDragCatchArmed())
        return;
    if (!armed && !dropTargets().isEmpty())
        return;
    {
        Change change(*this, SurfaceMotion::Surface);
        change.state.isDragCatchArmed = armed;
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
    const bool wasExpanded = phase() == Phase::Expanded;
    if (!wasExpanded)
        Q_EMIT aboutToOpen();
    {
        Change change(*this, SurfaceMotion::Surface);
        change.state.dropTargets = targets;
        change.state.selection.reset();
        change.state.requestedContentHeight.reset();
        change.state.phase = Phase::Expanded;
    }
    if (!wasExpanded)
        m_haptics.tick();
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
        Change change(*this, SurfaceMotion::Zone);
        change.state.hoveredDropZone = zone;
    }
    if (zone)
        m_haptics.tick();
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
    Change change(*this, SurfaceMotion::Surface);
    change.state.dropTargets.clear();
    change.state.hoveredDropZone.reset();
    if (!keepOpen)
        change.state.phase = Phase::Idle;
}

void NotchViewModel::setMetrics(const NotchMetrics &metrics, SurfaceMotion motion)
{
    Change change(*this, motion);
    change.state.metrics = metrics;
}

void NotchViewModel::setDropZoneFrames(const QMap<KestroModule, QRectF> &frames)
{
    m_dropZoneFrames = frames;
}

void NotchViewModel::setRequestedContentHeight(std::optional<double> height)
{
    Change change(*this, SurfaceMotion::Surface);
    change.state.requestedContentHeight = height;
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

} // namespace ostrelle
