#pragma once

#include "platform/x11/WatchConnection.h"

#include <QString>

namespace ostrelle {

/// The icon theme that the user has set, live, from the desktop's XSETTINGS manager ("Net/IconThemeName"), which every
/// desktop with themes runs on X11. Main thread.
class X11IconTheme final : public QObject
{
    Q_OBJECT
public:
    explicit X11IconTheme(WatchConnection &watch);

Q_SIGNALS:
    /// Empty when the manager has gone.
    void changed(const QString &name);

private:
    void handle(const xcb_generic_event_t &event);
    void askForManager();
    void askForSettings();
    void setName(const QString &name);

    WatchConnection &m_watch;
    xcb_atom_t m_selection;
    xcb_atom_t m_property;
    int m_fixesEvent;
    xcb_window_t m_manager = XCB_WINDOW_NONE;
    QString m_name;
    WatchConnection::Subscription m_subscription;
};

} // namespace ostrelle
