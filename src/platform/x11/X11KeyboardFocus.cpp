#include "platform/x11/X11KeyboardFocus.h"

#include "platform/x11/WatchConnection.h"
#include "platform/x11/XcbReply.h"

#include <QCoreApplication>
#include <QPointer>

namespace ostrelle {

namespace {

xcb_window_t focusIn(const void *reply)
{
    return reply ? static_cast<const xcb_get_input_focus_reply_t *>(reply)->focus : xcb_window_t{XCB_WINDOW_NONE};
}

bool isPopupOrHotKeyGrab(const xcb_focus_in_event_t &event)
{
    return event.mode != XCB_NOTIFY_MODE_NORMAL && event.mode != XCB_NOTIFY_MODE_WHILE_GRABBED;
}

bool isAboutTheWindowItself(const xcb_focus_in_event_t &event)
{
    // The others tell that the focus follows the pointer, or moved within the window.
    return event.detail != XCB_NOTIFY_DETAIL_POINTER && event.detail != XCB_NOTIFY_DETAIL_INFERIOR;
}

} // namespace

X11KeyboardFocus::X11KeyboardFocus(WatchConnection &watch, QObject *parent)
    : QObject(parent)
    , m_watch(watch)
{
    QCoreApplication::instance()->installNativeEventFilter(this);
}

X11KeyboardFocus::~X11KeyboardFocus() = default;

void X11KeyboardFocus::setWindow(xcb_window_t window)
{
    if (m_window != window) {
        m_window = window;
        ++m_attempt;
        m_isGivingBack = false;
        setHeld(false);
    }
}

void X11KeyboardFocus::setFocus(xcb_window_t window, std::function<void(xcb_window_t)> then)
{
    // A window that died or is hidden refuses by an error that nobody reads: what counts is who has the focus then.
    xcb_set_input_focus(m_watch.xcb(), XCB_INPUT_FOCUS_PARENT, window, XCB_CURRENT_TIME);
    m_watch.whenReplied(xcb_get_input_focus(m_watch.xcb()).sequence,
                        [self = QPointer<X11KeyboardFocus>(this), then = std::move(then)](const void *reply) {
                            if (self) {
                                then(focusIn(reply));
                            }
                        });
}

void X11KeyboardFocus::take()
{
    if (!m_window || (m_isHeld && !m_isGivingBack)) {
        return;
    }
    const int attempt = ++m_attempt;
    m_isGivingBack = false;
    m_watch.whenReplied(xcb_get_input_focus(m_watch.xcb()).sequence,
                        [self = QPointer<X11KeyboardFocus>(this)](const void *reply) {
                            const xcb_window_t focused = focusIn(reply);
                            if (self && focused != self->m_window && focused != XCB_WINDOW_NONE) {
                                self->m_previous = focused;
                            }
                        });
    setFocus(m_window, [this, attempt](xcb_window_t focused) {
        if (attempt != m_attempt) {
            return;
        }
        if (focused != m_window) {
            Q_EMIT refused();
        } else {
            setHeld(true); // no event follows when the window had the focus all along
        }
    });
}

void X11KeyboardFocus::giveBack()
{
    if (!m_isHeld || m_isGivingBack) {
        return;
    }
    const int attempt = ++m_attempt;
    m_isGivingBack = true;
    m_watch.whenReplied(xcb_get_input_focus(m_watch.xcb()).sequence,
                        [self = QPointer<X11KeyboardFocus>(this), attempt](const void *reply) {
                            if (!self || attempt != self->m_attempt) {
                                return;
                            }
                            if (focusIn(reply) != self->m_window) {
                                self->m_isGivingBack = false; // somebody took it meanwhile
                                return;
                            }
                            if (self->m_previous == XCB_WINDOW_NONE) {
                                self->giveToTopmost(attempt);
                            } else {
                                self->giveTo({self->m_previous}, attempt);
                            }
                        });
}

void X11KeyboardFocus::giveTo(std::vector<xcb_window_t> candidates, int attempt)
{
    if (candidates.empty()) {
        setFocus(XCB_INPUT_FOCUS_POINTER_ROOT, [this](xcb_window_t) { m_isGivingBack = false; });
        return;
    }
    const xcb_window_t next = candidates.back();
    candidates.pop_back();
    setFocus(next, [this, next, candidates = std::move(candidates), attempt](xcb_window_t focused) {
        if (attempt != m_attempt) {
            return;
        }
        if (focused != m_window) {
            m_isGivingBack = false;
        } else if (next == m_previous) {
            giveToTopmost(attempt);
        } else {
            giveTo(candidates, attempt);
        }
    });
}

void X11KeyboardFocus::giveToTopmost(int attempt)
{
    m_previous = XCB_WINDOW_NONE;
    const auto cookie = xcb_get_property(m_watch.xcb(), 0, m_watch.root(), m_watch.atom("_NET_CLIENT_LIST_STACKING"),
                                         XCB_ATOM_WINDOW, 0, 4096);
    m_watch.whenReplied(cookie.sequence, [self = QPointer<X11KeyboardFocus>(this), attempt](const void *reply) {
        if (self && attempt == self->m_attempt) {
            const auto windows = propertyWords(static_cast<const xcb_get_property_reply_t *>(reply)); // bottom to top
            self->giveTo({windows.begin(), windows.end()}, attempt);
        }
    });
}

bool X11KeyboardFocus::nativeEventFilter(const QByteArray &eventType, void *message, qintptr *)
{
    if (eventType != "xcb_generic_event_t") {
        return false;
    }
    const int type = static_cast<const xcb_generic_event_t *>(message)->response_type & 0x7f;
    if (type != XCB_FOCUS_IN && type != XCB_FOCUS_OUT) {
        return false;
    }
    const auto &event = *static_cast<const xcb_focus_in_event_t *>(message);
    if (event.event == m_window && !isPopupOrHotKeyGrab(event) && isAboutTheWindowItself(event)) {
        setHeld(type == XCB_FOCUS_IN);
    }
    return false;
}

void X11KeyboardFocus::setHeld(bool held)
{
    if (m_isHeld == held) {
        return;
    }
    m_isHeld = held;
    if (held) {
        Q_EMIT gained();
    } else {
        m_isGivingBack = false;
        Q_EMIT lost();
    }
}

} // namespace ostrelle
