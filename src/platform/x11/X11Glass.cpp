#include "platform/x11/X11Glass.h"

#include "platform/x11/XcbReply.h"

#include <xcb/xfixes.h>

namespace ostrelle {

X11Glass::X11Glass(WatchConnection &watch, QObject *parent)
    : QObject(parent)
    , m_root(watch.root())
    , m_selection(watch.atom(QByteArray("_NET_WM_CM_S").append(QByteArray::number(watch.screenNumber())).constData()))
    , m_blurProperty(watch.atom("_KDE_NET_WM_BLUR_BEHIND_REGION"))
    , m_fixesEvent(watch.firstEvent(&xcb_xfixes_id) + XCB_XFIXES_SELECTION_NOTIFY)
    , m_subscription(watch.onEvent([this](const xcb_generic_event_t &event) { handle(event); }))
{
    xcb_connection_t *connection = watch.xcb();
    if (watch.firstEvent(&xcb_xfixes_id)) {
        xcb_discard_reply(connection, xcb_xfixes_query_version(connection, 5, 0).sequence);
        xcb_xfixes_select_selection_input(connection, watch.root(), m_selection,
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                              XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                              XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    }
    const auto ownerCookie = xcb_get_selection_owner(connection, m_selection);
    const auto blurCookie = xcb_get_property(connection, 0, watch.root(), m_blurProperty, XCB_ATOM_ANY, 0, 0);
    const XcbReply<xcb_get_selection_owner_reply_t> owner(
        xcb_get_selection_owner_reply(connection, ownerCookie, nullptr));
    const XcbReply<xcb_get_property_reply_t> blur(xcb_get_property_reply(connection, blurCookie, nullptr));
    watch.flush();
    m_hasCompositor = owner && owner->owner != XCB_WINDOW_NONE;
    m_canBlur = blur && blur->type != XCB_ATOM_NONE;
}

PanelHost::Glass X11Glass::glass() const
{
    if (!m_hasCompositor) {
        return PanelHost::Glass::None;
    }
    return m_canBlur ? PanelHost::Glass::Compositor : PanelHost::Glass::Snapshot;
}

void X11Glass::handle(const xcb_generic_event_t &event)
{
    const int type = event.response_type & 0x7f;
    if (type == XCB_PROPERTY_NOTIFY) {
        const auto &notify = reinterpret_cast<const xcb_property_notify_event_t &>(event);
        if (notify.window == m_root && notify.atom == m_blurProperty) {
            set(m_hasCompositor, notify.state == XCB_PROPERTY_NEW_VALUE);
        }
    } else if (type == m_fixesEvent) {
        const auto &notify = reinterpret_cast<const xcb_xfixes_selection_notify_event_t &>(event);
        if (notify.selection == m_selection) {
            set(notify.subtype == XCB_XFIXES_SELECTION_EVENT_SET_SELECTION_OWNER && notify.owner != XCB_WINDOW_NONE,
                m_canBlur);
        }
    }
}

void X11Glass::set(bool hasCompositor, bool canBlur)
{
    const PanelHost::Glass before = glass();
    m_hasCompositor = hasCompositor;
    m_canBlur = canBlur;
    if (glass() != before) {
        Q_EMIT changed();
    }
}

} // namespace ostrelle
