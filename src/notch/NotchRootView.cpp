#include "notch/NotchRootView.h"

#include "core/SettingsStore.h"
#include "foundation/MakeChild.h"
#include "foundation/TaskScheduler.h"
#include "notch/ContentFade.h"
#include "notch/DropRouterView.h"
#include "notch/ModuleChromeMetrics.h"
#include "notch/ModuleContainer.h"
#include "notch/ModuleStrip.h"
#include "notch/NotchAppearance.h"
#include "notch/NotchShape.h"
#include "notch/SettingsButton.h"
#include "notch/ToolView.h"
#include "notch/controls/EmptyStateView.h"

#include <QPainter>

#include <algorithm>
#include <utility>

namespace ostrelle {
namespace {

constexpr double kPeekIdle = 0.42;
constexpr double kPeekHovered = 0.82;
constexpr double kPeekCatching = 0.85;
constexpr double kSettingsRight = 12;
constexpr double kSettingsTop = 5;
/// So far below the marks the row of landing zones begins its way: symbols and titles then fit the closed notch.
constexpr double kZonesLead = 13;
/// Expansion at which light glass passes middle grey. Colours on it turn at once: halfway between those for black and
/// those for light glass nothing would be seen on it.
constexpr double kMiddleGrey = 0.6;

QString noToolsMessage()
{
    return QStringLiteral("No tools enabled");
}

} // namespace

NotchRootView::NotchRootView(const ControlContext &context, NotchViewModel &viewModel, SettingsStore &settings,
                             ToolRegistry &registry, TaskScheduler &scheduler, UpdateService &updates, QWidget *parent)
    : QWidget(parent)
    , m_context(context)
    , m_viewModel(viewModel)
    , m_registry(registry)
    , m_scheduler(scheduler)
    , m_motion(context, kPeekIdle,
               [this] {
                   arrange();
                   Q_EMIT moved();
               })
    , m_header(makeChild<ModuleHeader>(this, context))
    , m_strip(makeChild<ModuleStrip>(this, context, registry))
    , m_settingsButton(makeChild<SettingsButton>(this, context, updates))
    , m_noTools(makeChild<EmptyStateView>(
          this, context,
          EmptyStateView::Content{.symbol = QStringLiteral("square.grid.2x2"),
                                  .message = noToolsMessage(),
                                  .hint = QStringLiteral("Choose your tools in Settings ▸ Modules")}))
    , m_router(makeChild<DropRouterView>(this, context, viewModel, registry))
{
    setAttribute(Qt::WA_NoSystemBackground);
    m_noTools.hide();
    m_router.hide();
    connect(&m_settingsButton, &QAbstractButton::clicked, this, &NotchRootView::settingsRequested);
    connect(&m_header, &ModuleHeader::backRequested, this, [this] { m_viewModel.backToSelector(); });
    connect(&m_strip, &ModuleStrip::selected, this, [this](KestroModule module) { m_viewModel.select(module); });

    m_inputs.setBinding([geometry = viewModel.bindableGeometry(), phase = viewModel.bindablePhase(),
                         selection = viewModel.bindableSelection(), armed = viewModel.bindableDragCatchArmed(),
                         modules = settings.bindableActiveModules(), targets = viewModel.bindableDropTargets()] {
        return Inputs{.geometry = geometry.value(),
                      .phase = phase.value(),
                      .selection = selection.value(),
                      .isCatchArmed = armed.value(),
                      .modules = modules.value(),
                      .dropTargets = targets.value()};
    });
    m_inputsWatch = m_inputs.addNotifier([this] { react(); });
    const Inputs &inputs = m_inputs.value();
    m_strip.setModules(inputs.modules);
    m_motion.moveTo(PanelFrame::atRest(inputs.geometry, inputs.phase, false, devicePixelRatioF()), SurfaceMotion::None);
    arrange();
}

double NotchRootView::peekOpacity(const Inputs &inputs, double present)
{
    if (inputs.geometry.contentSize.isEmpty())
        return 0;
    switch (inputs.phase) {
    case Phase::Idle:
        return inputs.isCatchArmed ? kPeekCatching : kPeekIdle;
    case Phase::Hover:
        return kPeekHovered;
    case Phase::Expanded:
        break;
    }
    // On their way to tiles the marks keep the strength that they had.
    return present;
}

void NotchRootView::react()
{
    Q_EMIT aboutToChange();
    const Inputs &inputs = m_inputs.value();
    const bool expanded = isExpanded();
    const std::optional<KestroModule> module = expanded ? inputs.selection : std::nullopt;
    // Closing leaves everything as it is and fades it.
    const double toolness = module ? 1 : expanded ? 0 : m_toolness;
    if (std::exchange(m_wasExpanded, expanded) != expanded)
        m_focusIsDue = true;
    if (expanded)
        m_openInset = inputs.geometry.contentTopInset;
    m_strip.setModules(inputs.modules);
    m_motion.setZonesOpacity(expanded && !inputs.dropTargets.isEmpty() ? 1 : 0);
    if (expanded)
        offerZones(inputs.dropTargets);
    if (module != m_shown || toolness != m_toolness)
        showTool(module, toolness);
    const PanelFrame target =
        PanelFrame::atRest(inputs.geometry, inputs.phase, module.has_value(), devicePixelRatioF());
    if (expanded && !inputs.dropTargets.isEmpty())
        m_stripCentre = target.stripCentre;
    m_motion.moveTo(target, m_viewModel.motion());
    m_motion.setPeekOpacity(peekOpacity(inputs, m_motion.peekOpacity()));
    if (expanded && !module && inputs.dropTargets.isEmpty() && inputs.modules.isEmpty())
        m_noTools.appear();
    else
        m_noTools.disappear();
    arrange();
    Q_EMIT moved();
    scheduleFollowUp();
}

/// Without targets the zones that are there fade.
void NotchRootView::offerZones(const QList<KestroModule> &targets)
{
    if (!targets.isEmpty())
        m_router.setTargets(targets);
    const double zones = targets.isEmpty() ? 0 : 1;
    if (std::exchange(m_zones, zones) != zones)
        m_focusIsDue = true;
    m_motion.setZones(zones);
}

ToolView *NotchRootView::openTool() const
{
    return m_tool && isExpanded() ? &m_tool->view() : nullptr;
}

void NotchRootView::showTool(std::optional<KestroModule> module, double toolness)
{
    const double departing = m_tool ? m_tool->opacity() : 0;
    if (m_tool)
        leaveTool();
    m_toolReplacesTool = m_shown.has_value() && module.has_value();
    m_shown = module;
    m_toolness = toolness;
    m_header.setModule(module);
    if (isExpanded())
        m_strip.setActive(module);
    m_motion.switchContent(toolness, departing);
    m_focusIsDue = true;
    if (!module)
        return;
    m_tool = &makeChild<ModuleContainer>(this, m_context, m_registry, *module);
    connect(&m_tool->view(), &ToolView::wantedBodyHeightChanged, this, &NotchRootView::scheduleFollowUp);
    connect(&m_tool->view(), &ToolView::dismissRequested, this, &NotchRootView::dismissRequested);
    m_tool->lower();
    m_tool->show();
}

void NotchRootView::leaveTool()
{
    if (!m_context.appearance.reducesMotion()) {
        m_leaving = m_tool->picture();
        m_leavingPosition = m_tool->pos();
    }
    m_tool->disconnect(this);
    m_tool->view().disconnect(this);
    m_tool->hide();
    m_tool->deleteLater();
    m_tool = nullptr;
}

/// What follows from a change is done after it: inside a change of the view model nothing may change it again.
void NotchRootView::scheduleFollowUp()
{
    m_followUp = m_scheduler.after(std::chrono::nanoseconds(0), this, [this] { followUp(); });
}

void NotchRootView::followUp()
{
    reportHeight();
    if (std::exchange(m_focusIsDue, false))
        placeFocus();
}

void NotchRootView::reportHeight()
{
    if (!m_tool)
        return;
    const std::optional<double> wanted = m_tool->view().wantedBodyHeight();
    if (wanted && wanted != m_viewModel.requestedContentHeight())
        m_viewModel.setRequestedContentHeight(wanted);
}

void NotchRootView::placeFocus()
{
    if (QWidget *focused = window()->focusWidget())
        focused->clearFocus();
    if (m_tool)
        m_tool->view().appeared();
    else if (isExpanded() && m_zones == 0)
        m_strip.setFocus(Qt::OtherFocusReason);
}

QRectF NotchRootView::contentClip() const
{
    const PanelFrame &frame = m_motion.frame();
    return {width() / 2.0 - frame.width / 2, 0, frame.width, frame.height - kSeamStripHeight};
}

QPainterPath NotchRootView::outline() const
{
    const PanelFrame &frame = m_motion.frame();
    return NotchShape{.bottomRadius = frame.bottomRadius, .topRadius = frame.topRadius}.path(
        {width() / 2.0 - frame.width / 2, 0, frame.width, frame.height});
}

void NotchRootView::arrange()
{
    const double content = m_motion.frame().contentOpacity();
    arrangeStrip();
    arrangeZones();
    arrangeHeader(content);
    arrangeTool(content);
    arrangeSelector(content);
    if (m_motion.departure() <= 0)
        m_leaving = {};
    update();
}

/// Landing zones take the place of marks and tiles at once, hence those are gone when the zones are half there; marks
/// come back after them.
void NotchRootView::arrangeStrip()
{
    PanelFrame strip = m_motion.frame();
    const double zones = m_motion.zones();
    const double uncovered = std::max(0.0, 1 - 2 * m_motion.zonesOpacity());
    const double marks =
        std::min(uncovered, 1 - zones * std::clamp(strip.openness / PanelFrame::kContentStart, 0.0, 1.0));
    strip.openness *= 1 - zones;
    // Coming back it is there from the start: it takes the focus then.
    m_strip.setVisible(marks > 0 || m_zones == 0);
    m_strip.setLook({.centre = QPointF(width() / 2.0, strip.stripCentre),
                     .openness = strip.openness,
                     .content = strip.contentOpacity() * uncovered,
                     .toolness = m_motion.toolness(),
                     .peekOpacity = m_motion.peekOpacity() * marks});
}

/// Where they stand the glass comes too late for them: they start with the marks and come down with it.
void NotchRootView::arrangeZones()
{
    const PanelFrame &frame = m_motion.frame();
    const double travel = frame.stripCentre - m_stripCentre + kZonesLead * (1 - frame.openness);
    m_router.place(QPointF(width() / 2.0, m_openInset), travel);
    m_router.setLook(m_motion.zonesOpacity(), frame.expansion < kMiddleGrey, outline());
    if (!m_motion.isMoving())
        m_router.settle();
}

void NotchRootView::arrangeHeader(double content)
{
    const double arriving = m_motion.arrival();
    const double leaving = m_motion.departure();
    const double header = m_toolReplacesTool ? 1 : m_shown ? arriving : leaving;
    // The leading end keeps to the surface's edge, which has arrived when the tool has.
    m_header.move(QPointF(width() / 2.0 - m_motion.frame().width / 2, m_openInset).toPoint());
    // A header that fades as a whole carries its symbol and title with it.
    m_header.setLook({.header = header * content,
                      .arriving = m_toolReplacesTool || !m_shown ? arriving : 1,
                      .leaving = m_toolReplacesTool ? leaving
                                 : m_shown          ? 0.0
                                                    : 1.0});
}

void NotchRootView::arrangeTool(double content)
{
    if (!m_tool)
        return;
    const NotchGeometry &geometry = m_inputs.value().geometry;
    const double body = geometry.contentSize.height() - m_openInset - kSeamStripHeight;
    const QPointF corner(width() / 2.0 - chrome::kPanelWidth / 2, m_openInset);
    const QRect place(corner.toPoint(), QSizeF(chrome::kPanelWidth, body).toSize());
    // To be told where it is already would cost it the picture that it is faded with.
    if (m_tool->geometry() != place)
        m_tool->setGeometry(place);
    if (m_motion.isMoving())
        m_tool->setLook(std::min(content, m_motion.arrival()), contentClip());
    else
        m_tool->settle();
}

void NotchRootView::arrangeSelector(double content)
{
    const double other = std::max(m_motion.toolness(), m_motion.zones());
    const double presence = content * (1 - std::clamp(other, 0.0, 1.0));
    const double right = width() / 2.0 + m_motion.frame().width / 2;
    m_settingsButton.move(
        QPointF(right - kSettingsRight - SettingsButton::kDiameter, m_openInset + kSettingsTop).toPoint());
    m_settingsButton.setPresence(presence);
    m_settingsButton.setVisible(presence > 0);
    // It travels with the strip whose place it takes, so that it stays on a surface that is still growing.
    m_noTools.setOpacity(presence);
    m_noTools.setGeometry(QRectF(width() / 2.0 - chrome::kPanelWidth / 2,
                                 m_motion.frame().stripCentre - chrome::kSelectorHeight / 2, chrome::kPanelWidth,
                                 chrome::kSelectorHeight)
                              .toRect());
}

void NotchRootView::resizeEvent(QResizeEvent *)
{
    arrange();
}

void NotchRootView::paintEvent(QPaintEvent *)
{
    if (m_leaving.isNull())
        return;
    QPainter painter(this);
    painter.setOpacity(std::min(m_motion.departure(), m_motion.frame().contentOpacity()));
    paintFadedContent(painter, m_leavingPosition, m_leaving, contentClip());
}

} // namespace ostrelle
