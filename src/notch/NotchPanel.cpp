#include "notch/NotchPanel.h"

#include "core/SettingsStore.h"
#include "foundation/MakeChild.h"
#include "notch/AccessibleRole.h"
#include "notch/CrossFade.h"
#include "notch/FrameClock.h"
#include "notch/NotchAppearance.h"
#include "notch/NotchController.h"
#include "notch/NotchRootView.h"
#include "notch/NotchViewModel.h"
#include "notch/PanelBackdrop.h"
#include "notch/PopupStyle.h"
#include "notch/ToolView.h"
#include "notch/controls/NotchMenu.h"
#include "platform/PanelHost.h"
#include "platform/Platform.h"
#include "platform/Popups.h"

#include <QAction>
#include <QApplication>
#include <QContextMenuEvent>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include <utility>

namespace ostrelle {
namespace {

/// The shadow and the ears reach this far beyond the surface.
constexpr int kSurroundings = 48;

} // namespace

NotchPanel::NotchPanel(NotchController &controller, SettingsStore &settings, ToolRegistry &registry, Platform &platform,
                       TaskScheduler &scheduler, UpdateService &updates, const ControlContext &context)
    : m_controller(controller)
    , m_viewModel(controller.viewModel())
    , m_settings(settings)
    , m_platform(platform)
    , m_context(context)
    , m_backdrop(makeChild<PanelBackdrop>(this, platform.panelHost(), context.appearance))
    , m_root(makeChild<NotchRootView>(this, context, controller.viewModel(), settings, registry, scheduler, updates))
    , m_crossFade(makeChild<CrossFade>(this, context))
{
    setAccessibleName(QStringLiteral("Ostrelle"));
    setAccessibleRole(*this, QAccessible::Dialog);
    applyToolTipStyle(context.appearance);

    connect(&controller, &NotchController::aboutToOpen, this, &NotchPanel::prepareToOpen);
    connect(&m_backdrop, &PanelBackdrop::changed, this, &NotchPanel::surfaceMoved);
    connect(&m_root, &NotchRootView::moved, this, &NotchPanel::surfaceMoved);
    connect(&m_root, &NotchRootView::dismissRequested, this, [this] { m_controller.dismiss(); });
    connect(&m_root, &NotchRootView::settingsRequested, this, &NotchPanel::settingsButtonPressed);
    connect(&m_root, &NotchRootView::aboutToChange, this, [this] {
        if (m_context.appearance.reducesMotion())
            m_crossFade.begin();
    });
    connect(&context.appearance, &NotchAppearance::changed, this, [this] {
        applyToolTipStyle(m_context.appearance);
        update();
    });
    connect(&platform.panelHost(), &PanelHost::glassChanged, this, [this] {
        if (isExpanded())
            m_backdrop.capture(width());
        surfaceMoved();
    });
    // A press anywhere in the open panel asks for the keyboard, also one that a control keeps for itself.
    qApp->installEventFilter(this);
}

NotchPanel::~NotchPanel() = default;

SurfaceState NotchPanel::surfaceState() const
{
    const PanelFrame &frame = m_root.frame();
    const NotchAppearance &appearance = m_context.appearance;
    return {.size = QSizeF(frame.width, frame.height),
            .expansion = frame.expansion,
            .bottomRadius = frame.bottomRadius,
            .topRadius = frame.topRadius,
            .scheme = appearance.scheme(),
            .contrast = appearance.contrast(),
            .theme = appearance.theme(),
            .glass = m_platform.panelHost().glass(),
            .backdrop = m_backdrop.image(),
            .backdropArea = m_backdrop.area()};
}

ToolView *NotchPanel::openTool() const
{
    return m_root.openTool();
}

bool NotchPanel::isExpanded() const
{
    return m_viewModel.phase() == Phase::Expanded;
}

void NotchPanel::prepareToOpen()
{
    if (const auto screen = m_controller.currentScreen())
        m_context.clock.setRefreshRate(screen->refreshRate);
    m_backdrop.capture(width());
}

void NotchPanel::surfaceMoved()
{
    const QRect area = paintedArea();
    update(area.united(m_lastPainted));
    m_lastPainted = area;
    updateOutline();
    const bool cameToRest = std::exchange(m_wasMoving, m_root.isMoving()) && !m_wasMoving;
    if (!m_wasMoving && m_viewModel.phase() == Phase::Idle)
        m_backdrop.release();
    else if (cameToRest && isExpanded() && m_platform.panelHost().hasCompositor())
        m_backdrop.capture(width());
}

void NotchPanel::updateOutline()
{
    PanelHost &host = m_platform.panelHost();
    // Without a use for it in every frame, the outline is told only where it rests.
    if (host.glass() == PanelHost::Glass::Snapshot && m_root.isMoving())
        return;
    host.setOutline(surfaceOutline(QPointF(width() / 2.0, 0), surfaceState()));
}

QRect NotchPanel::paintedArea() const
{
    const PanelFrame &frame = m_root.frame();
    const QRectF surface(width() / 2.0 - frame.width / 2, 0, frame.width, frame.height);
    return surface.adjusted(-kSurroundings, 0, kSurroundings, kSurroundings).toAlignedRect();
}

bool NotchPanel::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::MouseButtonPress && watched->isWidgetType() && isExpanded()) {
        if (static_cast<QWidget *>(watched)->window() == this)
            m_controller.pressedInside();
    }
    const bool endsComposing = event->type() == QEvent::FocusOut;
    if ((event->type() == QEvent::InputMethod || endsComposing) && watched->isWidgetType() &&
        static_cast<QWidget *>(watched)->window() == this) {
        m_controller.setComposing(!endsComposing &&
                                  !static_cast<QInputMethodEvent *>(event)->preeditString().isEmpty());
    }
    return QWidget::eventFilter(watched, event);
}

void NotchPanel::enterEvent(QEnterEvent *)
{
    m_viewModel.pointerEntered();
}

void NotchPanel::leaveEvent(QEvent *)
{
    // After a menu the toolkit forgets to tell the widget that the pointer was on before it.
    for (QWidget *widget : findChildren<QWidget *>()) {
        if (widget->underMouse()) {
            widget->setAttribute(Qt::WA_UnderMouse, false);
            QEvent leave(QEvent::Leave);
            QApplication::sendEvent(widget, &leave);
        }
    }
    m_viewModel.pointerExited();
}

void NotchPanel::mousePressEvent(QMouseEvent *event)
{
    // While a drag is to be caught, presses beside the surface come here too.
    m_wasPressed = event->button() == Qt::LeftButton && m_controller.surfaceRect().contains(event->position());
}

void NotchPanel::mouseReleaseEvent(QMouseEvent *event)
{
    const bool isClick = std::exchange(m_wasPressed, false) && event->button() == Qt::LeftButton &&
                         m_controller.surfaceRect().contains(event->position());
    if (!isClick)
        return;
    if (isExpanded())
        m_controller.pressedInside(); // hovering opened it between press and release
    else
        m_controller.present(std::nullopt, NotchController::Focus::Take, NotchController::Opening::Explicit);
}

void NotchPanel::makeMenu()
{
    m_menu = std::make_unique<NotchMenu>(m_context.appearance, this);
    if (ToolView *tool = openTool()) {
        const QList<MenuEntry> entries = tool->menuEntries();
        for (const MenuEntry &entry : entries)
            m_menu->addEntry(entry.text, tool, entry.action);
        if (!entries.isEmpty())
            m_menu->addSeparator();
    }
    m_menu->addEntry(QStringLiteral("Settings…"), this, [this] { Q_EMIT settingsRequested(); });
    m_menu->addEntry(QStringLiteral("Welcome…"), this, [this] { Q_EMIT welcomeRequested(); });
    m_menu->addSeparator();
    const QAction *quit = m_menu->addAction(QStringLiteral("Quit Ostrelle"));
    connect(quit, &QAction::triggered, this, &NotchPanel::quitRequested);
}

void NotchPanel::contextMenuEvent(QContextMenuEvent *event)
{
    makeMenu();
    m_platform.popups().openMenu(*m_menu, *this, event->pos());
}

void NotchPanel::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape) {
        m_controller.escapePressed();
        return;
    }
    // From the header or the strip: the tool has taken its own.
    if (event->matches(QKeySequence::Undo) && openTool() != nullptr) {
        openTool()->undo();
        return;
    }
    const QList<KestroModule> modules = m_settings.activeModules();
    const QString text = event->text();
    const int digit = text.isEmpty() ? -1 : text.front().digitValue();
    const bool onSelector = isExpanded() && !m_viewModel.selection() && m_viewModel.dropTargets().isEmpty();
    if (onSelector && digit >= 1 && digit <= modules.size())
        m_viewModel.select(modules.at(digit - 1));
    else
        QWidget::keyPressEvent(event);
}

void NotchPanel::resizeEvent(QResizeEvent *)
{
    m_root.setGeometry(rect());
    updateOutline();
}

void NotchPanel::paintEvent(QPaintEvent *)
{
    const SurfaceState state = surfaceState();
    if (state.size.isEmpty())
        return;
    QPainter painter(this);
    paintNotchSurface(painter, QPointF(width() / 2.0, 0), state, m_cache);
}

} // namespace ostrelle
