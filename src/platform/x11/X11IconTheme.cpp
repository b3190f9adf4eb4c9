#include "platform/x11/X11IconTheme.h"

#include "platform/x11/XSettings.h"
#include "platform/x11/XcbReply.h"

#include <QPointer>

#include <xcb/xfixes.h>

namespace ostrelle {

namespace {

constexpr std::uint32_t kMostWords = 64 * 1024; // of four bytes; real ones have some kilobytes

} // namespace

X11IconTheme::X11IconTheme(WatchConnection &watch)
    : m_watch(watch)
    , m_selection(watch.atom(QByteArray("_XSETTINGS_S").append(QByteArray::number(watch.screenNumber())).constData()))
    , m_property(watch.atom("_XSETTINGS_SETTINGS"))
    , m_fixesEvent(watch.firstEvent(&xcb_xfixes_id) + XCB_XFIXES_SELECTION_NOTIFY)
    , m_subscription(watch.onEvent([this](const xcb_generic_event_t &event) { handle(event); }))
{
    if (watch.firstEvent(&xcb_xfixes_id)) {
        xcb_discard_reply(watch.xcb(), xcb_xfixes_query_version(watch.xcb(), 5, 0).sequence);
        xcb_xfixes_select_selection_input(watch.xcb(), watch.root(), m_selection,
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                              XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                              XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    }
    askForManager();
}

void X11IconTheme::handle(const xcb_generic_event_t &event)
{
    const int type = event.response_type & 0x7f;
    if (type == XCB_PROPERTY_NOTIFY) {
        const auto &notify = reinterpret_cast<const xcb_property_notify_event_t &>(event);
        if (notify.window == m_manager && notify.atom == m_property) {
            askForSettings();
        }
    } else if (type == m_fixesEvent &&
               reinterpret_cast<const xcb_xfixes_selection_notify_event_t &>(event).selection == m_selection) {
        askForManager();
    }
}

void X11IconTheme::askForManager()
{
    const auto cookie = xcb_get_selection_owner(m_watch.xcb(), m_selection);
    m_watch.whenReplied(cookie.sequence, [self = QPointer<X11IconTheme>(this)](const void *reply) {
        if (self && reply) {
            self->m_manager = static_cast<const xcb_get_selection_owner_reply_t *>(reply)->owner;
            self->askForSettings();
        }
    });
}

void X11IconTheme::askForSettings()
{
    if (m_manager == XCB_WINDOW_NONE) {
        setName({});
        return;
    }
    // Before the property is read, so that no change falls between.
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(m_watch.xcb(), m_manager, XCB_CW_EVENT_MASK, &events);
    const auto cookie = xcb_get_property(m_watch.xcb(), 0, m_manager, m_property, XCB_ATOM_ANY, 0, kMostWords);
    m_watch.whenReplied(cookie.sequence, [self = QPointer<X11IconTheme>(this)](const void *reply) {
        if (self) {
            const auto bytes = propertyBytes(static_cast<const xcb_get_property_reply_t *>(reply));
            self->setName(
                xsettingsString(QByteArray(bytes.data(), static_cast<qsizetype>(bytes.size())), "Net/IconThemeName"));
        }
    });
    m_watch.flush();
}

void X11IconTheme::setName(const QString &name)
{
    if (m_name != name) {
        m_name = name;
        Q_EMIT changed(name);
    }
}

} // namespace ostrelle
