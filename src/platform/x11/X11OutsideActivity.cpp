#include "platform/x11/X11OutsideActivity.h"

#include "platform/x11/WatchConnection.h"
#include "platform/x11/X11RawPointer.h"

#include <QCoreApplication>
#include <QPointer>
#include <QWidget>

#include <xcb/xinput.h>

namespace ostrelle {

namespace {

/// Frames, and containers in them; the bound only ends the search in a tree that keeps changing.
constexpr int kDeepestFrame = 8;
/// More than can be under way at once.
constexpr int kRememberedPresses = 8;

bool isInItsWindow(const xcb_input_button_press_event_t &press)
{
    // While a menu is open the toolkit receives every press of the desktop, reported relative to the menu.
    const QWidget *widget = QWidget::find(press.event);
    const QPointF native(press.event_x / 65536.0, press.event_y / 65536.0);
    return !widget || QRectF(widget->rect()).contains(native / widget->devicePixelRatioF());
}

} // namespace

X11OutsideActivity::X11OutsideActivity(WatchConnection &watch, X11RawPointer &pointer, QObject *parent)
    : OutsideActivity(parent)
    , m_watch(watch)
    , m_activation(watch)
{
    if (const auto *input = xcb_get_extension_data(watch.xcb(), &xcb_input_id); input && input->present) {
        m_inputOpcode = input->major_opcode;
    }
    connect(&pointer, &X11RawPointer::pressed, this, [this](quint32 time) {
        look(m_watch.root(), {time, m_epoch}, 0);
    });
    connect(&m_activation, &ActivationWatch::otherApplicationActivated, this,
            &OutsideActivity::otherApplicationActivated);
    QCoreApplication::instance()->installNativeEventFilter(this);
}

X11OutsideActivity::~X11OutsideActivity() = default;

void X11OutsideActivity::disregardPast()
{
    ++m_epoch;
    m_activation.disregardPast();
}

void X11OutsideActivity::look(xcb_window_t window, Press press, int depth)
{
    const auto cookie = xcb_query_pointer(m_watch.xcb(), window);
    m_watch.whenReplied(cookie.sequence, [self = QPointer<X11OutsideActivity>(this), press, depth](const void *reply) {
        if (!self) {
            return;
        }
        const auto *pointer = static_cast<const xcb_query_pointer_reply_t *>(reply);
        const xcb_window_t child = pointer ? pointer->child : xcb_window_t{XCB_WINDOW_NONE};
        if (child != XCB_WINDOW_NONE && self->m_watch.isOwn(child)) {
            return;
        }
        if (child != XCB_WINDOW_NONE && depth < kDeepestFrame) {
            self->look(child, press, depth + 1);
        } else {
            // The toolkit may have the same press still in its queue: it gets its turn first.
            QMetaObject::invokeMethod(
                self, [self, press] { self->settle(press); }, Qt::QueuedConnection);
        }
    });
}

void X11OutsideActivity::settle(Press press)
{
    if (press.epoch == m_epoch && !m_ownPresses.contains(press.time)) {
        Q_EMIT pressedOutside();
    }
}

bool X11OutsideActivity::nativeEventFilter(const QByteArray &eventType, void *message, qintptr *)
{
    if (eventType != "xcb_generic_event_t") {
        return false;
    }
    const auto &event = *static_cast<const xcb_ge_generic_event_t *>(message);
    if ((event.response_type & 0x7f) == XCB_GE_GENERIC && event.extension == m_inputOpcode &&
        event.event_type == XCB_INPUT_BUTTON_PRESS) {
        const auto &press = *static_cast<const xcb_input_button_press_event_t *>(message);
        if (isInItsWindow(press) && !m_ownPresses.contains(press.time)) { // each is seen twice
            m_ownPresses.append(press.time);
            if (m_ownPresses.size() > kRememberedPresses) {
                m_ownPresses.removeFirst();
            }
        }
    }
    return false;
}

} // namespace ostrelle
