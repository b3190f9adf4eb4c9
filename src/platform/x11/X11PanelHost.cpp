#include "platform/x11/X11PanelHost.h"

#include <QApplication>
#include <QEvent>
#include <QScreen>
#include <QWidget>

#include <algorithm>
#include <cmath>

namespace ostrelle {

namespace {

/// The widest that the panel gets, logical pixels.
constexpr int kWidth = 900;

QScreen *screenNamed(const QString &name)
{
    const QList<QScreen *> screens = QGuiApplication::screens();
    const auto found =
        std::find_if(screens.begin(), screens.end(), [&name](const QScreen *screen) { return screen->name() == name; });
    return found == screens.end() ? nullptr : *found;
}

QRect topCentre(const QRect &frame, const QSizeF &size)
{
    // As odd or even as the screen is, so that the middle of the window is the middle of the screen.
    const int width = std::min(kWidth + frame.width() % 2, frame.width());
    const int height = std::clamp(static_cast<int>(std::ceil(size.height())), 1, frame.height());
    return QRect(frame.x() + (frame.width() - width) / 2, frame.y(), width, height);
}

} // namespace

X11PanelHost::X11PanelHost(WatchConnection &watch, QObject *parent)
    : PanelHost(parent)
    , m_glass(watch)
    , m_window(watch)
    , m_focus(watch)
    , m_backdrop(watch, m_window)
    , m_dialogs(watch)
{
    m_window.setGlass(m_glass.glass());
    connect(&m_glass, &X11Glass::changed, this, [this] {
        m_window.setGlass(m_glass.glass());
        if (m_panel) {
            m_panel->update(); // a region to blur shows from the next painting on
        }
        Q_EMIT glassChanged();
    });
    connect(&m_focus, &X11KeyboardFocus::gained, this, &PanelHost::keyboardGained);
    connect(&m_focus, &X11KeyboardFocus::refused, this, &PanelHost::keyboardRefused);
    connect(&m_focus, &X11KeyboardFocus::lost, this, &PanelHost::keyboardLost);
}

void X11PanelHost::attach(QWidget &panel)
{
    Q_ASSERT(!m_panel && !panel.isVisible());
    m_panel = &panel;
    panel.setWindowFlags(Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::BypassWindowManagerHint);
    panel.setAttribute(Qt::WA_TranslucentBackground);
    panel.setAttribute(Qt::WA_ShowWithoutActivating);
    panel.setAttribute(Qt::WA_AlwaysShowToolTips); // it is rarely the active window
    panel.installEventFilter(this);
    if (panel.internalWinId()) {
        adoptWindow();
    } else {
        panel.winId(); // the filter takes it over
    }
}

bool X11PanelHost::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_panel && event->type() == QEvent::WinIdChange && m_panel->internalWinId()) {
        adoptWindow();
    }
    return PanelHost::eventFilter(watched, event);
}

void X11PanelHost::adoptWindow()
{
    m_window.adopt(*m_panel);
    m_focus.setWindow(m_window.id());
    m_dialogs.setWindow(m_window.id());
    Q_EMIT windowReplaced(m_panel->windowHandle());
}

void X11PanelHost::place(const QString &screenName, const QSizeF &size)
{
    QScreen *screen = screenNamed(screenName);
    if (!screen || !m_panel) {
        return; // the screen went away; the change of screens that follows names another one
    }
    const QRect before = m_panel->geometry();
    const QRect after = topCentre(screen->geometry(), size);
    const bool isMoved =
        before.topLeft() != after.topLeft() || before.width() != after.width() || m_panel->screen() != screen;
    if (m_panel->screen() != screen) {
        m_panel->setScreen(screen); // its scale is what the geometry is converted with
    }
    if (before != after) {
        m_panel->setGeometry(after);
    }
    const bool isShown = m_panel->isVisible();
    if (!isShown) {
        m_panel->show();
    }
    if (isMoved || !isShown || m_window.scale() != m_panel->devicePixelRatioF()) {
        m_window.update(*m_panel); // its round trip also means that the window is mapped when the keyboard is asked for
    }
    if (before.size() != after.size()) {
        m_window.announceSize();
    }
}

void X11PanelHost::raise()
{
    if (!m_panel) {
        return;
    }
    m_panel->raise();
    if (QWidget *popup = QApplication::activePopupWidget()) {
        popup->raise(); // an open menu stays above
    }
}

void X11PanelHost::setGivingWay(bool givesWay)
{
    const bool wasGivingWay = m_dialogs.isOn();
    m_dialogs.setOn(givesWay);
    if (wasGivingWay && !givesWay) {
        raise();
    }
}

void X11PanelHost::setInteractiveRect(const QRectF &rect)
{
    m_window.setInteractiveRect(rect);
}

void X11PanelHost::setOutline(const QPainterPath &outline)
{
    m_window.setOutline(outline);
}

void X11PanelHost::captureBackdrop(const QRectF &area, QObject *context, std::function<void(BackdropCapture)> answer)
{
    m_backdrop.capture(area, hasCompositor() ? X11Backdrop::Source::WindowsBelow : X11Backdrop::Source::Screen, context,
                       std::move(answer));
}

void X11PanelHost::takeKeyboard(const ActivationToken &)
{
    m_focus.take(); // X11 asks for no permission
}

} // namespace ostrelle
