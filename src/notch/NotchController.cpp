#include "notch/NotchController.h"

#include "core/SettingsStore.h"
#include "foundation/TaskScheduler.h"
#include "notch/NotchViewModel.h"
#include "platform/DragSense.h"
#include "platform/OutsideActivity.h"
#include "platform/PanelHost.h"
#include "platform/Platform.h"
#include "platform/PointerNear.h"

#include <utility>

namespace ostrelle {

namespace {

/// How long a closing surface takes at most to come to its place; only then does the panel change screens by itself.
constexpr std::chrono::milliseconds kClosingTime{520};
/// In which a window manager gives the keyboard to a window that was pressed.
constexpr std::chrono::milliseconds kFocusByPressTime{150};
/// The press that chose a candidate may be heard of after what it committed.
constexpr std::chrono::milliseconds kCompositionEcho{300};

} // namespace

NotchController::NotchController(NotchViewModel &viewModel, SettingsStore &settings, TaskScheduler &scheduler,
                                 Platform &platform, QObject *parent)
    : QObject(parent)
    , m_viewModel(viewModel)
    , m_settings(settings)
    , m_scheduler(scheduler)
    , m_platform(platform)
    , m_window(scheduler, *this, [this] { return settledWindowSize(); })
    , m_dragWatch(viewModel, settings, scheduler, platform.dragSense())
    , m_hoverDismissWatch(viewModel, scheduler, platform.panelHost(), platform.pointerNear(),
                          {.isSuppressed = [this] { return m_isAutoCollapseSuppressed; },
                           .interactiveRect = [this] { return interactiveRect(); }})
{
}

void NotchController::start(QWidget &panel)
{
    Q_ASSERT(!m_panel);
    m_panel = &panel;
    m_platform.panelHost().attach(panel);
    observe();
    m_screen = screenUnderPointer();
    measureScreen(SurfaceMotion::None);
    if (m_screen)
        m_window.jumpTo(desiredWindowSize());
    m_platform.panelHost().raise();
    updateScreenWatch();
}

void NotchController::observe()
{
    m_geometryNotifier = m_viewModel.bindableGeometry().addNotifier([this] { geometryChanged(); });
    m_phaseNotifier = m_viewModel.bindablePhase().addNotifier([this] { phaseChanged(); });
    m_windowSizeNotifier = bindableWindowSize().addNotifier([this] { place(); });
    m_displayNotchNotifier =
        m_settings.bindableDisplayNotch().addNotifier([this] { measureScreen(SurfaceMotion::Zone); });

    connect(&m_viewModel, &NotchViewModel::aboutToOpen, this, &NotchController::aboutToOpen);
    connect(&m_viewModel, &NotchViewModel::hoverOpenDue, this,
            [this] { present(std::nullopt, Focus::Leave, Opening::ByHover); });
    connect(&m_viewModel, &NotchViewModel::hoverDismissWatchDue, this, &NotchController::startHoverDismissWatch);

    connect(&m_platform.screens(), &Screens::changed, this, &NotchController::screensChanged);
    connect(&m_platform.pointerNear(), &PointerNear::screenChanged, this, [this](const QString &name) {
        if (m_viewModel.phase() == Phase::Idle)
            follow(name);
    });
    connect(&m_platform.outsideActivity(), &OutsideActivity::pressedOutside, this, &NotchController::pressedOutside);
    connect(&m_platform.outsideActivity(), &OutsideActivity::otherApplicationActivated, this,
            &NotchController::closeByOthers);
    connect(&m_platform.panelHost(), &PanelHost::keyboardGained, this, &NotchController::keyboardGained);
}

void NotchController::present(std::optional<KestroModule> module, Focus focus, Opening opening,
                              const ActivationToken &token)
{
    if (const std::optional<Screen> screen = screenUnderPointer())
        follow(screen->name);
    // An application that was activated just before must not close what is opened now.
    m_platform.outsideActivity().disregardPast();
    // Raising again would put the panel above the candidates of an input method.
    if (m_viewModel.phase() != Phase::Expanded || !m_platform.panelHost().hasKeyboard())
        m_platform.panelHost().raise();
    const bool isByHover = opening == Opening::ByHover;
    // Opened first: a keyboard that is gained by a closed notch is given back at once.
    m_viewModel.expand(module, isByHover);
    if (focus == Focus::Take)
        m_platform.panelHost().takeKeyboard(token);
    if (isByHover)
        startHoverDismissWatch();
    else
        m_hoverDismissWatch.cancel();
}

void NotchController::dismiss()
{
    m_viewModel.collapse();
}

void NotchController::follow(const QString &screenName)
{
    if (m_screen && m_screen->name == screenName)
        return;
    if (const std::optional<Screen> screen = m_platform.screens().named(screenName))
        moveTo(*screen);
}

void NotchController::startHoverDismissWatch()
{
    m_hoverDismissWatch.start();
}

void NotchController::suppressAutoCollapse()
{
    m_autoCollapseRelease.cancel();
    ++m_suppressions;
    m_isAutoCollapseSuppressed = true;
    m_platform.panelHost().setGivingWay(true);
}

void NotchController::releaseAutoCollapse(std::chrono::nanoseconds delay)
{
    Q_ASSERT(m_suppressions > 0);
    if (--m_suppressions > 0)
        return;
    m_autoCollapseRelease.cancel();
    m_platform.panelHost().setGivingWay(false);
    if (delay > std::chrono::nanoseconds::zero())
        m_autoCollapseRelease = m_scheduler.after(delay, this, [this] { m_isAutoCollapseSuppressed = false; });
    else
        m_isAutoCollapseSuppressed = false;
}

void NotchController::pressedInside()
{
    if (!m_platform.panelHost().hasKeyboard())
        m_platform.panelHost().takeKeyboard({});
}

void NotchController::escapePressed()
{
    if (m_viewModel.selection())
        m_viewModel.backToSelector();
    else
        dismiss();
}

std::optional<Screen> NotchController::screenUnderPointer() const
{
    std::optional<Screen> screen;
    if (const std::optional<QString> name = m_platform.pointerNear().screen())
        screen = m_platform.screens().named(*name);
    return screen ? screen : m_platform.screens().primary();
}

void NotchController::moveTo(const Screen &screen)
{
    m_screen = screen;
    const QSizeF size = desiredWindowSize();
    if (size == windowSize())
        place();
    else
        m_window.jumpTo(size);
    measureScreen(SurfaceMotion::Zone);
}

void NotchController::place()
{
    if (!m_screen || !m_panel)
        return;
    m_platform.panelHost().place(m_screen->name, windowSize());
    m_platform.panelHost().setInteractiveRect(interactiveRect());
}

void NotchController::measureScreen(SurfaceMotion motion)
{
    if (m_screen)
        m_viewModel.setMetrics(NotchMetrics::measure(*m_screen, m_settings.displayNotch()), motion);
}

QSizeF NotchController::desiredWindowSize() const
{
    const QSizeF size = m_viewModel.geometry().windowSize;
    return m_screen ? size.boundedTo(m_screen->frame.size()) : size;
}

std::optional<QSizeF> NotchController::settledWindowSize() const
{
    if (m_viewModel.isDragCatchArmed() || !m_viewModel.dropTargets().isEmpty())
        return std::nullopt;
    return desiredWindowSize();
}

QRectF NotchController::interactiveRect() const
{
    return atTopCentre(m_viewModel.geometry().catchArea);
}

QRectF NotchController::surfaceRect() const
{
    return atTopCentre(m_viewModel.geometry().interactionSize);
}

QRectF NotchController::atTopCentre(const QSizeF &size) const
{
    if (!m_panel || size.isEmpty())
        return {};
    const QSizeF fitting = size.boundedTo(m_panel->size());
    return {QPointF((m_panel->width() - fitting.width()) / 2, 0), fitting};
}

void NotchController::updateScreenWatch()
{
    const bool isNeeded = m_viewModel.phase() == Phase::Idle && m_platform.screens().all().size() >= 2;
    if (isNeeded == m_isWatchingScreen)
        return;
    m_isWatchingScreen = isNeeded;
    m_platform.pointerNear().watchScreen(isNeeded);
    m_screenCatchUp.cancel();
    // The watch tells of changes only; the pointer may have gone to another screen while the notch was open.
    const std::optional<QString> pointerScreen = m_platform.pointerNear().screen();
    if (isNeeded && pointerScreen && m_screen && *pointerScreen != m_screen->name) {
        m_screenCatchUp = m_scheduler.after(kClosingTime, this, [this] {
            if (const std::optional<QString> name = m_platform.pointerNear().screen())
                follow(*name);
        });
    }
}

void NotchController::geometryChanged()
{
    if (!m_screen)
        return;
    m_window.request(desiredWindowSize());
    m_platform.panelHost().setInteractiveRect(interactiveRect());
}

void NotchController::phaseChanged()
{
    if (m_viewModel.phase() != Phase::Expanded) {
        m_hoverDismissWatch.cancel();
        m_isComposing = false;
        m_pressAside.cancel();
        giveUpKeyboard();
    }
    updateScreenWatch();
}

/// However it was closed, a closed notch keeps no keyboard.
void NotchController::giveUpKeyboard()
{
    const auto release = [this] {
        if (m_viewModel.phase() != Phase::Expanded && m_platform.panelHost().hasKeyboard())
            m_platform.panelHost().releaseKeyboard();
    };
    // The window manager gives the keyboard to what was pressed; giving it to the former window could come after that.
    // What it does not care for (a dock, the desktop) is cared for a moment later.
    if (m_isClosingByPress)
        m_keyboardRelease = m_scheduler.after(kFocusByPressTime, this, release);
    else
        release();
}

void NotchController::screensChanged()
{
    const std::optional<Screen> same = m_screen ? m_platform.screens().named(m_screen->name) : std::nullopt;
    if (!m_screen || same != m_screen) {
        m_screen.reset();
        if (const std::optional<Screen> screen = same ? same : screenUnderPointer())
            moveTo(*screen);
    }
    updateScreenWatch();
}

void NotchController::pressedOutside()
{
    m_dragWatch.begin();
    // While somebody composes, a press may choose a candidate in the input method's window, which only differs from
    // other windows in that it leaves the keyboard where it is.
    const bool mayChoose =
        m_isComposing || (m_compositionEnd && m_scheduler.now() - *m_compositionEnd < kCompositionEcho);
    if (mayChoose && m_platform.panelHost().hasKeyboard()) {
        m_pressAside = m_scheduler.after(kFocusByPressTime, this, [this] {
            if (!m_platform.panelHost().hasKeyboard())
                closeByPress();
        });
    } else {
        closeByPress();
    }
}

void NotchController::closeByPress()
{
    m_isClosingByPress = true;
    closeByOthers();
    m_isClosingByPress = false;
}

void NotchController::setComposing(bool isComposing)
{
    if (std::exchange(m_isComposing, isComposing) && !isComposing)
        m_compositionEnd = m_scheduler.now();
}

void NotchController::closeByOthers()
{
    if (!m_isAutoCollapseSuppressed)
        m_viewModel.collapse();
}

void NotchController::keyboardGained()
{
    // Granted after the notch was closed again.
    if (m_viewModel.phase() != Phase::Expanded)
        m_platform.panelHost().releaseKeyboard();
}

} // namespace ostrelle
