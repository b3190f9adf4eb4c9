#include "platform/x11/X11LoupeInput.h"

#include "platform/x11/XcbReply.h"
#include "platform/x11/XcbXkb.h"

#include <optional>

namespace ostrelle {

namespace {

constexpr int kLargeStep = 10;

enum Button : int { Left = 1, Right = 3, WheelUp = 4, WheelDown = 5 };

// X11/keysymdef.h
enum Keysym : xcb_keysym_t {
    KeySpace = 0x20,
    KeyPlus = 0x2b,
    KeyMinus = 0x2d,
    KeyEqual = 0x3d,
    KeyReturn = 0xff0d,
    KeyEscape = 0xff1b,
    KeyLeft = 0xff51,
    KeyUp = 0xff52,
    KeyRight = 0xff53,
    KeyDown = 0xff54,
    KeypadEnter = 0xff8d,
    KeypadLeft = 0xff96,
    KeypadUp = 0xff97,
    KeypadRight = 0xff98,
    KeypadDown = 0xff99,
    KeypadAdd = 0xffab,
    KeypadSubtract = 0xffad,
};

std::optional<QPoint> directionOf(xcb_keysym_t keysym)
{
    switch (keysym) {
    case KeyLeft:
    case KeypadLeft:
        return QPoint(-1, 0);
    case KeyRight:
    case KeypadRight:
        return QPoint(1, 0);
    case KeyUp:
    case KeypadUp:
        return QPoint(0, -1);
    case KeyDown:
    case KeypadDown:
        return QPoint(0, 1);
    default:
        return std::nullopt;
    }
}

/// Repeats come as presses without releases between them, for this connection.
void detectAutoRepeat(xcb_connection_t *connection)
{
    const auto *extension = xcb_get_extension_data(connection, &xcb_xkb_id);
    if (!extension || !extension->present) {
        return;
    }
    xcb_discard_reply(connection, xcb_xkb_use_extension(connection, 1, 0).sequence);
    constexpr std::uint32_t kFlag = XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT;
    xcb_discard_reply(connection,
                      xcb_xkb_per_client_flags(connection, XCB_XKB_ID_USE_CORE_KBD, kFlag, kFlag, 0, 0, 0).sequence);
}

} // namespace

X11LoupeInput::X11LoupeInput(WatchConnection &connection, Handlers handlers)
    : m_connection(connection)
    , m_handlers(std::move(handlers))
    , m_subscription(connection.onEvent([this](const xcb_generic_event_t &event) { handle(event); }))
{
    detectAutoRepeat(connection.xcb());
    const XcbReply<xcb_query_keymap_reply_t> keymap(
        xcb_query_keymap_reply(connection.xcb(), xcb_query_keymap(connection.xcb()), nullptr));
    for (std::size_t key = 0; keymap && key < m_held.size(); ++key) {
        m_held[key] = (keymap->keys[key / 8] >> (key % 8)) & 1;
    }
    connection.flush();
}

void X11LoupeInput::readKeyboard()
{
    const xcb_setup_t *setup = xcb_get_setup(m_connection.xcb());
    const auto count = static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1);
    const auto cookie = xcb_get_keyboard_mapping(m_connection.xcb(), setup->min_keycode, count);
    const XcbReply<xcb_get_keyboard_mapping_reply_t> mapping(
        xcb_get_keyboard_mapping_reply(m_connection.xcb(), cookie, nullptr));
    if (!mapping || mapping->keysyms_per_keycode == 0) {
        return;
    }
    m_firstKey = setup->min_keycode;
    m_keysyms.clear();
    const xcb_keysym_t *keysyms = xcb_get_keyboard_mapping_keysyms(mapping.get());
    for (int i = 0; i < xcb_get_keyboard_mapping_keysyms_length(mapping.get()); i += mapping->keysyms_per_keycode) {
        m_keysyms.push_back(keysyms[i]);
    }
}

xcb_keysym_t X11LoupeInput::keysym(xcb_keycode_t key) const
{
    const std::size_t index = key - std::size_t{m_firstKey};
    return key >= m_firstKey && index < m_keysyms.size() ? m_keysyms[index] : xcb_keysym_t{0};
}

void X11LoupeInput::warpPointer(const QPoint &position)
{
    m_warp = xcb_warp_pointer(m_connection.xcb(), XCB_WINDOW_NONE, m_connection.root(), 0, 0, 0, 0,
                              static_cast<std::int16_t>(position.x()), static_cast<std::int16_t>(position.y()))
                 .sequence;
    m_hasWarped = true;
    m_connection.flush();
}

void X11LoupeInput::handle(const xcb_generic_event_t &event)
{
    switch (event.response_type) { // events that another program has sent have a bit more, and are nobody's hands
    case XCB_MOTION_NOTIFY: {
        const auto &motion = reinterpret_cast<const xcb_motion_notify_event_t &>(event);
        if (m_endingRelease == 0 && !isOutdated(event)) {
            m_handlers.moved(QPoint(motion.root_x, motion.root_y));
        }
        break;
    }
    case XCB_BUTTON_PRESS:
        handleButton(reinterpret_cast<const xcb_button_press_event_t &>(event), isOutdated(event));
        break;
    case XCB_BUTTON_RELEASE: {
        const auto &release = reinterpret_cast<const xcb_button_release_event_t &>(event);
        m_lastButtonTime = release.time;
        if (m_endingRelease == -int{release.detail}) {
            m_handlers.ended();
        }
        break;
    }
    case XCB_KEY_PRESS:
        handleKey(reinterpret_cast<const xcb_key_press_event_t &>(event));
        break;
    case XCB_KEY_RELEASE: {
        const auto &release = reinterpret_cast<const xcb_key_release_event_t &>(event);
        m_held[release.detail] = false;
        if (m_endingRelease == int{release.detail}) {
            m_handlers.ended();
        }
        break;
    }
    case XCB_MAPPING_NOTIFY:
        m_keysyms.clear(); // read again with the next key: a program that types sends many of these
        break;
    default:
        break;
    }
}

bool X11LoupeInput::isOutdated(const xcb_generic_event_t &event) const
{
    // Events tell the last request that the server had seen: what it saw before the warp was elsewhere.
    return m_hasWarped && static_cast<int>(event.full_sequence - m_warp) < 0;
}

void X11LoupeInput::handleButton(const xcb_button_press_event_t &press, bool isElsewhere)
{
    m_lastButtonTime = press.time;
    if (m_endingRelease != 0) {
        return;
    }
    switch (press.detail) {
    case Left:
        if (!isElsewhere) {
            m_handlers.moved(QPoint(press.root_x, press.root_y));
        }
        choose(press.state & XCB_KEY_BUT_MASK_SHIFT ? Choice::Gather : Choice::Pick, -Left);
        break;
    case Right:
        choose(Choice::Cancel, -Right);
        break;
    case WheelUp:
        m_handlers.zoom(1);
        break;
    case WheelDown:
        m_handlers.zoom(-1);
        break;
    default:
        break;
    }
}

void X11LoupeInput::handleKey(const xcb_key_press_event_t &press)
{
    const bool isFirst = !m_held[press.detail];
    m_held[press.detail] = true;
    if (m_endingRelease != 0) {
        return;
    }
    const bool hasShift = press.state & XCB_KEY_BUT_MASK_SHIFT;
    if (m_keysyms.empty()) {
        readKeyboard();
        m_connection.flush();
    }
    const xcb_keysym_t symbol = keysym(press.detail);
    if (const auto direction = directionOf(symbol)) {
        m_handlers.step(*direction * (hasShift ? kLargeStep : 1));
        return;
    }
    switch (symbol) {
    case KeyReturn:
    case KeypadEnter:
    case KeySpace:
        if (isFirst) {
            choose(hasShift ? Choice::Gather : Choice::Pick, press.detail);
        }
        break;
    case KeyEscape:
        if (isFirst) {
            choose(Choice::Cancel, press.detail);
        }
        break;
    case KeyPlus:
    case KeyEqual:
    case KeypadAdd:
        m_handlers.zoom(1);
        break;
    case KeyMinus:
    case KeypadSubtract:
        m_handlers.zoom(-1);
        break;
    default:
        break;
    }
}

void X11LoupeInput::choose(Choice choice, int endingRelease)
{
    if (choice != Choice::Gather) {
        m_endingRelease = endingRelease;
    }
    m_handlers.chosen(choice);
}

} // namespace ostrelle
