#pragma once

#include "foundation/Task.h"
#include "notch/DragRelease.h"
#include "notch/NotchGeometry.h"

#include <QBindable>
#include <QList>
#include <QMap>
#include <QObject>
#include <QPointF>
#include <QProperty>
#include <QRectF>

#include <optional>

namespace ostrelle {

class DragSense;
class Haptics;
class SettingsStore;
class TaskScheduler;

/// How a change of the view model should move.
enum class SurfaceMotion { None, Hover, Surface, Zone };

/// The state machine of the notch. Views read it, the controller feeds it. Each operation changes everything that it
/// changes before an observer sees any of it. Main thread.
class NotchViewModel : public QObject
{
    Q_OBJECT
public:
    static constexpr double kHeaderHeight = 106;

    NotchViewModel(SettingsStore &settings, TaskScheduler &scheduler, DragSense &dragSense, Haptics &haptics,
                   QObject *parent = nullptr);

    Phase phase() const { return m_phase; }
    std::optional<KestroModule> selection() const { return m_selection; }
    NotchMetrics metrics() const { return m_metrics; }
    /// The tools offered as landing zones for what is being dragged.
    QList<KestroModule> dropTargets() const { return m_dropTargets; }
    std::optional<KestroModule> hoveredDropZone() const { return m_hoveredDropZone; }
    /// Where the landing zones are, in the coordinates of the points given to updateRouting().
    QMap<KestroModule, QRectF> dropZoneFrames() const { return m_dropZoneFrames; }
    /// Hovering opened the panel, so that leaving may close it.
    bool openedByHover() const { return m_openedByHover; }
    /// A drag is going on somewhere and the notch is ready to catch it.
    bool isDragCatchArmed() const { return m_isDragCatchArmed; }
    /// The body height that the open tool asked for.
    std::optional<double> requestedContentHeight() const { return m_state.value().requestedContentHeight; }
    /// All sizes, computed from the fields above and the settings.
    NotchGeometry geometry() const { return m_geometry; }

    /// For observing; they cannot be written through.
    QBindable<Phase> bindablePhase() const { return &m_phase; }
    QBindable<std::optional<KestroModule>> bindableSelection() const { return &m_selection; }
    QBindable<NotchMetrics> bindableMetrics() const { return &m_metrics; }
    QBindable<QList<KestroModule>> bindableDropTargets() const { return &m_dropTargets; }
    QBindable<std::optional<KestroModule>> bindableHoveredDropZone() const { return &m_hoveredDropZone; }
    QBindable<bool> bindableDragCatchArmed() const { return &m_isDragCatchArmed; }
    QBindable<NotchGeometry> bindableGeometry() const { return &m_geometry; }

    /// The spring of the change that observers are being told of; to be read there and then. A change that no operation
    /// made (settings) moves like the surface.
    SurfaceMotion motion() const { return m_motion; }

    void pointerEntered();
    void pointerExited();
    /// Opens on the tool, or on the selector without one.
    void expand(std::optional<KestroModule> module, bool hoverInitiated);
    void collapse();
    void select(KestroModule module);
    void backToSelector();
    /// Disarming is refused while landing zones are offered: the drop or its leaving ends them.
    void setDragCatch(bool armed);
    void beginRouting(const QList<KestroModule> &targets);
    void updateRouting(const QPointF &point);
    /// The drag left: ends the routing soon, unless it comes back.
    void scheduleRoutingEnd();
    void endRouting(bool keepOpen);

    void setMetrics(const NotchMetrics &metrics, SurfaceMotion motion);
    void setDropZoneFrames(const QMap<KestroModule, QRectF> &frames);
    void setRequestedContentHeight(std::optional<double> height);
    /// Ends openedByHover: the panel stays open until closed explicitly.
    void keepOpen();

Q_SIGNALS:
    /// The surface is about to grow from its closed state, for hovering or for opening. Nothing has changed yet.
    void aboutToOpen();
    /// The hover delay elapsed: the controller prepares the panel, then calls expand(none, hoverInitiated).
    void hoverOpenDue();
    /// The pointer left a panel that hovering had opened.
    void hoverDismissWatchDue();

private:
    class Change;

    void scheduleHoverOpen();
    void watchDragCatch();
    double shownBodyHeight() const;

    SettingsStore &m_settings;
    TaskScheduler &m_scheduler;
    DragSense &m_dragSense;
    Haptics &m_haptics;

    /// What operations change, in one step each.
    struct State
    {
        Phase phase = Phase::Idle;
        std::optional<KestroModule> selection;
        NotchMetrics metrics;
        QList<KestroModule> dropTargets;
        std::optional<KestroModule> hoveredDropZone;
        bool isDragCatchArmed = false;
        std::optional<double> requestedContentHeight;

        friend bool operator==(const State &, const State &) = default;
    };
    // One value and derived ones instead of a property update group: Qt 6.4 loses notifiers of bindings on bindings at
    // the end of a group.
    QProperty<State> m_state;
    QProperty<Phase> m_phase;
    QProperty<std::optional<KestroModule>> m_selection;
    QProperty<NotchMetrics> m_metrics;
    QProperty<QList<KestroModule>> m_dropTargets;
    QProperty<std::optional<KestroModule>> m_hoveredDropZone;
    QProperty<bool> m_isDragCatchArmed;
    QProperty<NotchGeometry> m_geometry;

    QMap<KestroModule, QRectF> m_dropZoneFrames;
    bool m_openedByHover = false;
    SurfaceMotion m_motion = SurfaceMotion::Surface;

    Task m_hoverOpen;
    Task m_dragCatchWatchdog;
    DragRelease m_catchRelease;
    Task m_routingExit;
};

} // namespace ostrelle
