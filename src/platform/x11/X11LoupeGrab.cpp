#include "platform/x11/X11LoupeGrab.h"

#include "foundation/TaskScheduler.h"
#include "platform/x11/WatchConnection.h"
#include "platform/x11/XcbReply.h"

#include <QLoggingCategory>

namespace ostrelle {

namespace {

Q_LOGGING_CATEGORY(lcLoupe, "ostrelle.platform", QtWarningMsg)

using namespace std::chrono_literals;

constexpr auto kInterval = 5ms;
/// Longer than a menu takes to close, shorter than anybody waits for a loupe.
constexpr auto kPatienceForPointer = 1s;
/// The keys of the shortcut that asked for the loupe may be held for a while: their grab is the keyboard's.
constexpr auto kPatienceForKeyboard = 3s;
/// The loupe is of use without keys, but who sees it expects that it hears them.
constexpr auto kTimeForBoth = 100ms;

xcb_cursor_t makeBlankCursor(WatchConnection &connection)
{
    const xcb_pixmap_t nothing = xcb_generate_id(connection.xcb());
    xcb_create_pixmap(connection.xcb(), 1, nothing, connection.root(), 1, 1);
    const xcb_gcontext_t context = xcb_generate_id(connection.xcb());
    xcb_create_gc(connection.xcb(), context, nothing, 0, nullptr); // draws with 0
    const xcb_rectangle_t all{0, 0, 1, 1};
    xcb_poly_fill_rectangle(connection.xcb(), nothing, context, 1, &all);
    xcb_free_gc(connection.xcb(), context);
    const xcb_cursor_t cursor = xcb_generate_id(connection.xcb());
    xcb_create_cursor(connection.xcb(), cursor, nothing, nothing, 0, 0, 0, 0, 0, 0, 0, 0);
    xcb_free_pixmap(connection.xcb(), nothing);
    return cursor;
}

} // namespace

X11LoupeGrab::X11LoupeGrab(WatchConnection &connection, TaskScheduler &scheduler, Handlers handlers)
    : m_connection(connection)
    , m_scheduler(scheduler)
    , m_handlers(std::move(handlers))
    , m_cursor(makeBlankCursor(connection))
    , m_started(scheduler.now())
    , m_attempt(scheduler.after(0ms, this, [this] { tryAgain(); }))
{
}

X11LoupeGrab::~X11LoupeGrab()
{
    release();
    xcb_free_cursor(m_connection.xcb(), m_cursor);
}

void X11LoupeGrab::release()
{
    m_attempt.cancel();
    if (std::exchange(m_hasPointer, false)) {
        xcb_ungrab_pointer(m_connection.xcb(), XCB_CURRENT_TIME);
    }
    if (std::exchange(m_hasKeyboard, false)) {
        xcb_ungrab_keyboard(m_connection.xcb(), XCB_CURRENT_TIME);
    }
    xcb_flush(m_connection.xcb());
}

void X11LoupeGrab::tryAgain()
{
    m_hasPointer = m_hasPointer || grabPointer();
    m_hasKeyboard = m_hasPointer && grabKeyboard();
    m_connection.flush();
    const auto waited = m_scheduler.now() - m_started;
    if (!m_hasKeyboard && waited >= (m_hasPointer ? kPatienceForKeyboard : kPatienceForPointer)) {
        qCWarning(lcLoupe, "No colour can be picked: another program holds the %s",
                  m_hasPointer ? "keyboard" : "pointer");
        release();
        m_handlers.failed();
        return;
    }
    if (!m_hasKeyboard) {
        m_attempt = m_scheduler.after(kInterval, this, [this] { tryAgain(); });
    }
    if (m_hasPointer && !m_isTold && (m_hasKeyboard || waited >= kTimeForBoth)) {
        m_isTold = true;
        m_handlers.taken(); // last: it may end the loupe
    }
}

bool X11LoupeGrab::grabPointer()
{
    constexpr std::uint32_t kEvents =
        XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE | XCB_EVENT_MASK_POINTER_MOTION;
    const auto cookie = xcb_grab_pointer(m_connection.xcb(), 0, m_connection.root(), kEvents, XCB_GRAB_MODE_ASYNC,
                                         XCB_GRAB_MODE_ASYNC, XCB_WINDOW_NONE, m_cursor, XCB_CURRENT_TIME);
    const XcbReply<xcb_grab_pointer_reply_t> reply(xcb_grab_pointer_reply(m_connection.xcb(), cookie, nullptr));
    return reply && reply->status == XCB_GRAB_STATUS_SUCCESS;
}

bool X11LoupeGrab::grabKeyboard()
{
    const auto cookie = xcb_grab_keyboard(m_connection.xcb(), 0, m_connection.root(), XCB_CURRENT_TIME,
                                          XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    const XcbReply<xcb_grab_keyboard_reply_t> reply(xcb_grab_keyboard_reply(m_connection.xcb(), cookie, nullptr));
    return reply && reply->status == XCB_GRAB_STATUS_SUCCESS;
}

} // namespace ostrelle
