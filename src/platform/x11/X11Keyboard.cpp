#include "platform/x11/X11Keyboard.h"

#include "foundation/TaskScheduler.h"
#include "platform/x11/XcbXkb.h"

#include <QKeyEvent>

namespace ostrelle {

namespace {

/// One change of the layout is announced several times.
constexpr std::chrono::milliseconds kSettlingTime{30};

/// What all events of the extension begin with.
std::uint8_t kindOf(const xcb_generic_event_t &event)
{
    return reinterpret_cast<const xcb_xkb_state_notify_event_t &>(event).xkbType;
}

} // namespace

X11Keyboard::X11Keyboard(WatchConnection &watch, TaskScheduler &scheduler, QObject *parent)
    : KeyboardLayout(parent)
    , m_watch(watch)
    , m_scheduler(scheduler)
    , m_subscription(watch.onEvent([this](const xcb_generic_event_t &event) { handle(event); }))
{
}

void X11Keyboard::Board::useLayout(std::size_t layout)
{
    map.currentLayout = layout;
    if (map.isCurrentLatin()) {
        latinLayout = layout;
    }
    names = map.names(latinLayout);
}

std::optional<quint32> X11Keyboard::keyCodeOf(const QKeyEvent &event) const
{
    return map().virtualKeyAt(static_cast<xcb_keycode_t>(event.nativeScanCode()));
}

const X11Keyboard::Board &X11Keyboard::board() const
{
    if (!m_board) {
        m_board = read();
        startWatching();
    }
    return *m_board;
}

X11Keyboard::Board X11Keyboard::read() const
{
    Board board{X11KeyboardMap::read(m_watch.xcb()).value_or(X11KeyboardMap()), std::nullopt, {}};
    m_watch.flush();
    board.useLayout(board.map.currentLayout);
    return board;
}

void X11Keyboard::startWatching() const
{
    if (!m_watch.firstEvent(&xcb_xkb_id)) {
        return;
    }
    xcb_connection_t *connection = m_watch.xcb();
    constexpr auto kDevice = static_cast<xcb_xkb_device_spec_t>(XCB_XKB_ID_USE_CORE_KBD);
    constexpr auto kMapParts = static_cast<std::uint16_t>(XCB_XKB_MAP_PART_KEY_SYMS | XCB_XKB_MAP_PART_MODIFIER_MAP);
    // Of the state only the layout: everything else would tell of every press of a modifier.
    xcb_xkb_select_events_details_t details{};
    details.affectNewKeyboard = XCB_XKB_NKN_DETAIL_KEYCODES;
    details.newKeyboardDetails = XCB_XKB_NKN_DETAIL_KEYCODES;
    details.affectState = XCB_XKB_STATE_PART_GROUP_LOCK;
    details.stateDetails = XCB_XKB_STATE_PART_GROUP_LOCK;
    xcb_xkb_select_events_aux(connection, kDevice,
                              XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY |
                                  XCB_XKB_EVENT_TYPE_STATE_NOTIFY,
                              0, 0, kMapParts, kMapParts, &details);
    constexpr std::uint32_t kFlag = XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT;
    xcb_discard_reply(connection, xcb_xkb_per_client_flags(connection, kDevice, kFlag, kFlag, 0, 0, 0).sequence);
    m_watch.flush();
}

void X11Keyboard::handle(const xcb_generic_event_t &event)
{
    const int first = m_board ? m_watch.firstEvent(&xcb_xkb_id) : 0;
    if (!first || (event.response_type & 0x7f) != first) {
        return;
    }
    if (kindOf(event) == XCB_XKB_STATE_NOTIFY) {
        setCurrentLayout(reinterpret_cast<const xcb_xkb_state_notify_event_t &>(event).lockedGroup);
    } else if (kindOf(event) == XCB_XKB_NEW_KEYBOARD_NOTIFY || kindOf(event) == XCB_XKB_MAP_NOTIFY) {
        m_reread = m_scheduler.after(kSettlingTime, this, [this] { reread(); });
    }
}

void X11Keyboard::reread()
{
    const QMap<quint32, QString> before = m_board->names;
    m_board = read();
    Q_EMIT mapChanged();
    if (m_board->names != before) {
        Q_EMIT changed();
    }
}

void X11Keyboard::setCurrentLayout(std::size_t layout)
{
    const QMap<quint32, QString> before = m_board->names;
    m_board->useLayout(layout);
    if (m_board->names != before) {
        Q_EMIT changed();
    }
}

} // namespace ostrelle
