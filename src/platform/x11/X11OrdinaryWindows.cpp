#include "platform/x11/X11OrdinaryWindows.h"

#include "platform/x11/ToolkitConnection.h"
#include "platform/x11/X11OwnFrame.h"
#include "platform/x11/XcbReply.h"

#include <QWidget>

#include <algorithm>
#include <utility>

namespace ostrelle {

namespace {

/// Source of the request in EWMH 1.5, _NET_ACTIVE_WINDOW: the user's direct wish.
constexpr std::uint32_t kByUser = 2;
constexpr std::uint8_t kWordBits = 32;

} // namespace

X11OrdinaryWindows::X11OrdinaryWindows(WatchConnection &watch)
    : m_watch(watch)
    , m_timekeeper(xcb_generate_id(watch.xcb()))
{
    const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(watch.xcb(), XCB_COPY_FROM_PARENT, m_timekeeper, watch.root(), 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &mask);
    m_subscription = watch.onEvent([this](const xcb_generic_event_t &event) {
        if ((event.response_type & 0x7f) != XCB_PROPERTY_NOTIFY) {
            return;
        }
        const auto &notify = reinterpret_cast<const xcb_property_notify_event_t &>(event);
        if (notify.window == m_timekeeper && m_waiting != XCB_WINDOW_NONE) {
            m_time = notify.time;
            activate(std::exchange(m_waiting, xcb_window_t{XCB_WINDOW_NONE}));
        }
    });
}

X11OrdinaryWindows::~X11OrdinaryWindows() = default;

void X11OrdinaryWindows::present(QWidget &window, const ActivationToken &)
{
    window.show();
    window.raise();
    // The window manager must hear of the window before it is asked to activate it.
    xcb_flush(toolkitConnection());
    m_waiting = static_cast<xcb_window_t>(window.winId());
    xcb_change_property(m_watch.xcb(), XCB_PROP_MODE_APPEND, m_timekeeper, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8, 0,
                        nullptr);
    m_watch.flush();
}

bool X11OrdinaryWindows::leavesRoomForShadows() const
{
    constexpr std::uint32_t kMost = 4096;
    const auto cookie =
        xcb_get_property(m_watch.xcb(), 0, m_watch.root(), m_watch.atom("_NET_SUPPORTED"), XCB_ATOM_ATOM, 0, kMost);
    const XcbReply<xcb_get_property_reply_t> reply(xcb_get_property_reply(m_watch.xcb(), cookie, nullptr));
    m_watch.flush();
    const auto supported = propertyWords(reply.get());
    return std::find(supported.begin(), supported.end(), m_watch.atom("_GTK_FRAME_EXTENTS")) != supported.end();
}

std::unique_ptr<OwnFrame> X11OrdinaryWindows::makeOwnFrame(QWidget &window, const QPainterPath &outline)
{
    return std::make_unique<X11OwnFrame>(m_watch, window, outline);
}

void X11OrdinaryWindows::activate(xcb_window_t window)
{
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = kWordBits;
    message.window = window;
    message.type = m_watch.atom("_NET_ACTIVE_WINDOW");
    message.data.data32[0] = kByUser;
    message.data.data32[1] = m_time;
    xcb_send_event(m_watch.xcb(), 0, m_watch.root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char *>(&message));
    m_watch.flush();
}

} // namespace ostrelle
