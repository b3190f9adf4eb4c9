#pragma once

#include "platform/PanelHost.h"
#include "platform/x11/WatchConnection.h"

#include <QObject>

namespace ostrelle {

/// Whether a compositor runs (EWMH, _NET_WM_CM_Sn selection) and whether it blurs regions behind windows, live.
class X11Glass final : public QObject
{
    Q_OBJECT
public:
    explicit X11Glass(WatchConnection &watch, QObject *parent = nullptr);

    bool hasCompositor() const { return m_hasCompositor; }
    PanelHost::Glass glass() const;

Q_SIGNALS:
    void changed();

private:
    void handle(const xcb_generic_event_t &event);
    void set(bool hasCompositor, bool canBlur);

    xcb_window_t m_root;
    xcb_atom_t m_selection;
    xcb_atom_t m_blurProperty;
    int m_fixesEvent;
    bool m_hasCompositor = false;
    bool m_canBlur = false;
    WatchConnection::Subscription m_subscription;
};

} // namespace ostrelle
