#pragma once

#include "foundation/Task.h"
#include "notch/ModuleHeader.h"
#include "notch/NotchGeometry.h"
#include "notch/NotchPhase.h"
#include "notch/PanelMotion.h"
#include "notch/controls/ControlContext.h"

#include <QList>
#include <QPainterPath>
#include <QPixmap>
#include <QPointer>
#include <QProperty>
#include <QWidget>

namespace ostrelle {

class DropRouterView;
class EmptyStateView;
class ModuleContainer;
class ModuleStrip;
class SettingsButton;
class SettingsStore;
class TaskScheduler;
class ToolRegistry;
class ToolView;
class UpdateService;

/// Everything that stands on the surface, laid out for the present frame: the strip that is there in every state, the
/// selector's settings button, and a tool with its header.
class NotchRootView : public QWidget
{
    Q_OBJECT
public:
    NotchRootView(const ControlContext &context, NotchViewModel &viewModel, SettingsStore &settings,
                  ToolRegistry &registry, TaskScheduler &scheduler, UpdateService &updates, QWidget *parent);

    const PanelFrame &frame() const { return m_motion.frame(); }
    bool isMoving() const { return m_motion.isMoving(); }
    /// The tool on screen, or null.
    ToolView *openTool() const;

Q_SIGNALS:
    /// The state is about to change.
    void aboutToChange();
    /// frame() or what stands on it has changed.
    void moved();
    /// A visit to a tool ended by itself.
    void dismissRequested();
    /// The settings button was pressed.
    void settingsRequested();

protected:
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    /// All that the layout depends on, as one value.
    struct Inputs
    {
        NotchGeometry geometry;
        Phase phase = Phase::Idle;
        std::optional<KestroModule> selection;
        bool isCatchArmed = false;
        QList<KestroModule> modules;
        QList<KestroModule> dropTargets;

        friend bool operator==(const Inputs &, const Inputs &) = default;
    };

    bool isExpanded() const { return m_inputs.value().phase == Phase::Expanded; }
    static double peekOpacity(const Inputs &inputs, double present);
    void react();
    void offerZones(const QList<KestroModule> &targets);
    void showTool(std::optional<KestroModule> module, double toolness);
    void leaveTool();
    void scheduleFollowUp();
    void followUp();
    void placeFocus();
    void reportHeight();
    void arrange();
    void arrangeStrip();
    void arrangeZones();
    QPainterPath outline() const;
    void arrangeHeader(double content);
    void arrangeTool(double content);
    void arrangeSelector(double content);
    QRectF contentClip() const;

    ControlContext m_context;
    NotchViewModel &m_viewModel;
    ToolRegistry &m_registry;
    TaskScheduler &m_scheduler;
    PanelMotion m_motion;
    QProperty<Inputs> m_inputs;
    QPropertyNotifier m_inputsWatch;

    ModuleHeader &m_header;
    ModuleStrip &m_strip;
    SettingsButton &m_settingsButton;
    EmptyStateView &m_noTools;
    DropRouterView &m_router;
    /// A child. Leaving may be the tool's own doing, so that it is deleted later.
    QPointer<ModuleContainer> m_tool;
    std::optional<KestroModule> m_shown;
    double m_toolness = 0; ///< aimed at
    bool m_toolReplacesTool = false;
    double m_zones = 0; ///< aimed at
    /// Of the tool that was left last, while it fades.
    QPixmap m_leaving;
    QPoint m_leavingPosition;
    double m_openInset = 0;   ///< content inset of the last open state, which closing keeps
    double m_stripCentre = 0; ///< where the strip rests beside landing zones
    bool m_wasExpanded = false;
    bool m_focusIsDue = false;
    Task m_followUp;
};

} // namespace ostrelle
