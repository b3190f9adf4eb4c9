#pragma once

#include "foundation/Task.h"
#include "foundation/TaskScheduler.h"
#include "notch/DragWatch.h"
#include "notch/HoverDismissWatch.h"
#include "notch/NotchMetrics.h"
#include "notch/WindowSizer.h"
#include "platform/ActivationToken.h"
#include "platform/Screens.h"
#include "records/KestroModule.h"

#include <QObject>
#include <QPointer>
#include <QProperty>
#include <QSizeF>
#include <QWidget>

#include <chrono>
#include <optional>

namespace ostrelle {

class NotchViewModel;
class Platform;
class SettingsStore;
enum class SurfaceMotion;

/// Keeps the panel on the right screen at the right size and turns pointer, keyboard, drag and application events into
/// operations of the view model. The only object that talks to the platform about the notch. Main thread.
class NotchController : public QObject
{
    Q_OBJECT
public:
    /// Whether opening takes the keyboard.
    enum class Focus { Leave, Take };
    /// How the opening came about: by hover it is watched and closes when the pointer stays away.
    enum class Opening { Explicit, ByHover };

    NotchController(NotchViewModel &viewModel, SettingsStore &settings, TaskScheduler &scheduler, Platform &platform,
                    QObject *parent = nullptr);

    /// Attaches `panel`, places it on the screen under the pointer and starts watching. Once.
    void start(QWidget &panel);

    void present(std::optional<KestroModule> module, Focus focus, Opening opening, const ActivationToken &token = {});
    /// Closes the notch; the keyboard goes back to the window that had it.
    void dismiss();
    /// Moves the panel to the screen of that name; nothing when it is there or there is no such screen.
    void follow(const QString &screenName);
    void startHoverDismissWatch();
    /// While suppressed, outside presses, other applications and the hover-dismiss watch do not close the notch, and
    /// dialogs come above it. Several may ask for it, each once until it releases.
    void suppressAutoCollapse();
    /// Of the last one: the panel is in front again at once.
    void releaseAutoCollapse(std::chrono::nanoseconds delay);
    /// A press in the open panel takes the keyboard.
    void pressedInside();
    /// An input method composes text in the panel, or has ended.
    void setComposing(bool isComposing);
    /// Escape in the panel: back to the selector, or closed.
    void escapePressed();

    NotchViewModel &viewModel() { return m_viewModel; }
    std::optional<Screen> currentScreen() const { return m_screen; }
    /// The window's size by the rule of growing at once and shrinking late, logical pixels. (0, 0) while there was no
    /// screen yet.
    QSizeF windowSize() const { return m_window.size(); }
    QBindable<QSizeF> bindableWindowSize() const { return m_window.bindableSize(); }
    /// The part of the panel that takes pointer events, panel coordinates: the surface, and more while a drag is to be
    /// caught.
    QRectF interactiveRect() const;
    /// The surface as the pointer meets it, panel coordinates; while it moves, where it will come to rest.
    QRectF surfaceRect() const;

Q_SIGNALS:
    /// The surface is about to grow from its closed state, for hovering or for opening: time to capture what is behind
    /// it. Emitted for both, hence twice on the way from closed over hover to open.
    void aboutToOpen();

private:
    void observe();
    std::optional<Screen> screenUnderPointer() const;
    void moveTo(const Screen &screen);
    void place();
    void measureScreen(SurfaceMotion motion);
    QRectF atTopCentre(const QSizeF &size) const;
    QSizeF desiredWindowSize() const;
    std::optional<QSizeF> settledWindowSize() const;
    void updateScreenWatch();

    void geometryChanged();
    void phaseChanged();
    void screensChanged();
    void pressedOutside();
    void closeByPress();
    void closeByOthers();
    void keyboardGained();
    void giveUpKeyboard();

    NotchViewModel &m_viewModel;
    SettingsStore &m_settings;
    TaskScheduler &m_scheduler;
    Platform &m_platform;

    QPointer<QWidget> m_panel;
    std::optional<Screen> m_screen;
    bool m_isAutoCollapseSuppressed = false;
    int m_suppressions = 0; ///< those not released yet
    bool m_isWatchingScreen = false;
    bool m_isClosingByPress = false;
    bool m_isComposing = false;
    std::optional<MonotonicTime> m_compositionEnd;
    Task m_pressAside;
    Task m_keyboardRelease;
    Task m_autoCollapseRelease;
    Task m_screenCatchUp;

    WindowSizer m_window;
    DragWatch m_dragWatch;
    HoverDismissWatch m_hoverDismissWatch;

    QPropertyNotifier m_geometryNotifier;
    QPropertyNotifier m_phaseNotifier;
    QPropertyNotifier m_windowSizeNotifier;
    QPropertyNotifier m_displayNotchNotifier;
};

} // namespace ostrelle
