#pragma once

#include "platform/x11/WatchConnection.h"

#include <QObject>

namespace ostrelle {

/// Keeps a window that no window manager stacks, because it is override-redirect, below a dialog that becomes active
/// (EWMH 1.5, _NET_ACTIVE_WINDOW, _NET_WM_WINDOW_TYPE_DIALOG) and above every other window that does, for as long as it
/// is on. KWin, openbox and xfwm4 leave it there; mutter and metacity keep such windows above all others and bring it
/// back at once. Main thread.
class X11DialogStacking final : public QObject
{
    Q_OBJECT
public:
    explicit X11DialogStacking(WatchConnection &watch, QObject *parent = nullptr);

    void setWindow(xcb_window_t window) { m_window = window; }
    void setOn(bool on);
    bool isOn() const { return m_isOn; }

private:
    void handle(const xcb_generic_event_t &event);
    void askForActiveWindow();
    void askForType(xcb_window_t window);
    void askForFrame(xcb_window_t window, int depth);
    void askForOrder(xcb_window_t frame);
    void stack(std::uint32_t mode, xcb_window_t sibling);

    WatchConnection &m_watch;
    xcb_atom_t m_activeWindow;
    xcb_window_t m_window = XCB_WINDOW_NONE;
    bool m_isOn = false;
    WatchConnection::Subscription m_subscription;
};

} // namespace ostrelle
