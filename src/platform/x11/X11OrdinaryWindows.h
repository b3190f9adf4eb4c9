#pragma once

#include "platform/OrdinaryWindows.h"
#include "platform/x11/WatchConnection.h"

namespace ostrelle {

/// Activates windows by the window manager, with the server's own time: the toolkit's last one may be long ago when the
/// request came from a command, and a window manager that guards the focus would then leave the window behind others.
class X11OrdinaryWindows final : public OrdinaryWindows
{
public:
    explicit X11OrdinaryWindows(WatchConnection &watch);
    ~X11OrdinaryWindows() override;

    void present(QWidget &window, const ActivationToken &token) override;
    bool leavesRoomForShadows() const override;
    std::unique_ptr<OwnFrame> makeOwnFrame(QWidget &window, const QPainterPath &outline) override;

private:
    void activate(xcb_window_t window);

    WatchConnection &m_watch;
    /// Its property changes tell the server's time.
    xcb_window_t m_timekeeper = XCB_WINDOW_NONE;
    /// To be activated as soon as the time is known.
    xcb_window_t m_waiting = XCB_WINDOW_NONE;
    xcb_timestamp_t m_time = XCB_CURRENT_TIME;
    WatchConnection::Subscription m_subscription;
};

} // namespace ostrelle
