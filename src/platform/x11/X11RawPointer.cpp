#include "platform/x11/X11RawPointer.h"

#include "platform/x11/XcbReply.h"

#include <xcb/xinput.h>

namespace ostrelle {

namespace {

constexpr std::uint32_t kPresses = XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS;
constexpr std::uint32_t kMotion = XCB_INPUT_XI_EVENT_MASK_RAW_MOTION;
/// Left, middle, right; 4 to 7 are the wheels.
constexpr int kHeldButtons = XCB_KEY_BUT_MASK_BUTTON_1 | XCB_KEY_BUT_MASK_BUTTON_2 | XCB_KEY_BUT_MASK_BUTTON_3;

bool isWheel(std::uint32_t button)
{
    return button >= 4 && button <= 7;
}

} // namespace

X11RawPointer::X11RawPointer(WatchConnection &watch, QObject *parent)
    : QObject(parent)
    , m_watch(watch)
    , m_subscription(watch.onEvent([this](const xcb_generic_event_t &event) { handle(event); }))
{
    const xcb_query_extension_reply_t *input = xcb_get_extension_data(watch.xcb(), &xcb_input_id);
    if (!input || !input->present) {
        return;
    }
    m_inputOpcode = input->major_opcode;
    // With a version below 2.1 the server stops raw events while another client holds a grab.
    xcb_discard_reply(watch.xcb(), xcb_input_xi_query_version(watch.xcb(), 2, 2).sequence);
    select(kPresses);
}

std::optional<X11RawPointer::State> X11RawPointer::state() const
{
    const auto cookie = xcb_query_pointer(m_watch.xcb(), m_watch.root());
    const XcbReply<xcb_query_pointer_reply_t> reply(xcb_query_pointer_reply(m_watch.xcb(), cookie, nullptr));
    m_watch.flush();
    if (!reply || !reply->same_screen) {
        return std::nullopt;
    }
    return State{QPoint(reply->root_x, reply->root_y), (reply->mask & kHeldButtons) != 0};
}

void X11RawPointer::watchMotion(bool on)
{
    if (m_inputOpcode) {
        select(on ? kPresses | kMotion : kPresses);
    }
}

void X11RawPointer::disregardPresses()
{
    m_isDisregarding = true;
}

void X11RawPointer::heedPresses(std::optional<quint32> after)
{
    m_isDisregarding = false;
    m_heedAfter = after;
}

bool X11RawPointer::isHeeded(quint32 time)
{
    if (m_isDisregarding || (m_heedAfter && static_cast<qint32>(time - *m_heedAfter) <= 0)) {
        return false;
    }
    m_heedAfter.reset(); // all that follow are later; the server's time begins anew every 49 days
    return true;
}

void X11RawPointer::select(std::uint32_t mask)
{
    struct
    {
        xcb_input_event_mask_t head;
        std::uint32_t mask;
    } const request{{XCB_INPUT_DEVICE_ALL_MASTER, 1}, mask};
    xcb_input_xi_select_events(m_watch.xcb(), m_watch.root(), 1, &request.head);
    m_watch.flush();
}

void X11RawPointer::handle(const xcb_generic_event_t &event)
{
    if ((event.response_type & 0x7f) != XCB_GE_GENERIC) {
        return;
    }
    const auto &generic = reinterpret_cast<const xcb_ge_generic_event_t &>(event);
    if (!m_inputOpcode || generic.extension != m_inputOpcode) {
        return;
    }
    if (generic.event_type == XCB_INPUT_RAW_MOTION) {
        Q_EMIT moved();
    } else if (generic.event_type == XCB_INPUT_RAW_BUTTON_PRESS) {
        const auto &press = reinterpret_cast<const xcb_input_raw_button_press_event_t &>(event);
        if (!isWheel(press.detail) && isHeeded(press.time)) {
            Q_EMIT pressed(press.time);
        }
    }
}

} // namespace ostrelle
