#pragma once

#include "platform/x11/WatchConnection.h"

#include <QByteArray>
#include <QObject>

#include <optional>

namespace ostrelle {

/// Follows the active window (EWMH 1.5, _NET_ACTIVE_WINDOW) and tells when it comes to belong to another ordinary
/// application. No active window, and windows of this program, are nothing: some window managers report these while the
/// panel has the keyboard.
class ActivationWatch final : public QObject
{
    Q_OBJECT
public:
    explicit ActivationWatch(WatchConnection &watch, QObject *parent = nullptr);

    /// An activation that is still being identified is not told.
    void disregardPast() { ++m_epoch; }

Q_SIGNALS:
    void otherApplicationActivated();

private:
    struct Owner
    {
        xcb_window_t window = XCB_WINDOW_NONE;
        xcb_window_t leader = XCB_WINDOW_NONE;
        std::uint32_t process = 0; ///< meaningful together with the class: a sandbox has numbers of its own
        QByteArray windowClass;
        bool isOrdinary = true; ///< no dock, no desktop
    };

    static bool isSameApplication(const Owner &one, const Owner &other);
    void handle(const xcb_generic_event_t &event);
    void askForActiveWindow();
    void askForOwner(xcb_window_t window, int epoch);
    void settle(const Owner &owner, int epoch);

    WatchConnection &m_watch;
    xcb_atom_t m_activeWindow;
    std::optional<Owner> m_last;
    int m_epoch = 0;
    bool m_isStarted = false; ///< what was active before the program is no activation
    WatchConnection::Subscription m_subscription;
};

} // namespace ostrelle
