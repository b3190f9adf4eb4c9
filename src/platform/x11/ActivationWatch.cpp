#include "platform/x11/ActivationWatch.h"

#include "platform/x11/XcbReply.h"

#include <QPointer>

#include <algorithm>

namespace ostrelle {

ActivationWatch::ActivationWatch(WatchConnection &watch, QObject *parent)
    : QObject(parent)
    , m_watch(watch)
    , m_activeWindow(watch.atom("_NET_ACTIVE_WINDOW"))
    , m_subscription(watch.onEvent([this](const xcb_generic_event_t &event) { handle(event); }))
{
    askForActiveWindow();
}

void ActivationWatch::handle(const xcb_generic_event_t &event)
{
    if ((event.response_type & 0x7f) != XCB_PROPERTY_NOTIFY) {
        return;
    }
    const auto &notify = reinterpret_cast<const xcb_property_notify_event_t &>(event);
    if (notify.window == m_watch.root() && notify.atom == m_activeWindow) {
        askForActiveWindow();
    }
}

void ActivationWatch::askForActiveWindow()
{
    const auto cookie = xcb_get_property(m_watch.xcb(), 0, m_watch.root(), m_activeWindow, XCB_ATOM_WINDOW, 0, 1);
    m_watch.whenReplied(cookie.sequence, [self = QPointer<ActivationWatch>(this), epoch = m_epoch](const void *reply) {
        if (!self) {
            return;
        }
        const auto windows = propertyWords(static_cast<const xcb_get_property_reply_t *>(reply));
        const xcb_window_t window = windows.empty() ? xcb_window_t{XCB_WINDOW_NONE} : windows.front();
        if (window != XCB_WINDOW_NONE && !self->m_watch.isOwn(window)) {
            self->askForOwner(window, epoch);
        } else {
            self->m_isStarted = true;
        }
    });
}

void ActivationWatch::askForOwner(xcb_window_t window, int epoch)
{
    // The answers come in the order of the questions, so the last one settles it. A window that died meanwhile answers
    // nothing and counts as an application of its own.
    const auto owner = std::make_shared<Owner>(); // shared by the answers, any of which may be the last to be freed
    owner->window = window;
    const auto ask = [this, window](xcb_atom_t property, auto take) {
        const auto cookie = xcb_get_property(m_watch.xcb(), 0, window, property, XCB_ATOM_ANY, 0, 256);
        m_watch.whenReplied(cookie.sequence,
                            [take](const void *reply) { take(static_cast<const xcb_get_property_reply_t *>(reply)); });
    };
    ask(m_watch.atom("WM_CLIENT_LEADER"), [owner](const xcb_get_property_reply_t *reply) {
        const auto words = propertyWords(reply);
        owner->leader = words.empty() ? xcb_window_t{XCB_WINDOW_NONE} : words.front();
    });
    ask(m_watch.atom("_NET_WM_PID"), [owner](const xcb_get_property_reply_t *reply) {
        const auto words = propertyWords(reply);
        owner->process = words.empty() ? 0 : words.front();
    });
    ask(XCB_ATOM_WM_CLASS, [owner](const xcb_get_property_reply_t *reply) {
        const auto bytes = propertyBytes(reply);
        owner->windowClass = QByteArray(bytes.data(), static_cast<qsizetype>(bytes.size()));
    });
    const xcb_atom_t dock = m_watch.atom("_NET_WM_WINDOW_TYPE_DOCK");
    const xcb_atom_t desktop = m_watch.atom("_NET_WM_WINDOW_TYPE_DESKTOP");
    ask(m_watch.atom("_NET_WM_WINDOW_TYPE"),
        [self = QPointer<ActivationWatch>(this), owner, epoch, dock, desktop](const xcb_get_property_reply_t *reply) {
            const auto types = propertyWords(reply);
            owner->isOrdinary = std::none_of(types.begin(), types.end(),
                                             [&](xcb_atom_t type) { return type == dock || type == desktop; });
            if (self) {
                self->settle(*owner, epoch);
            }
        });
}

bool ActivationWatch::isSameApplication(const Owner &one, const Owner &other)
{
    return one.window == other.window || (one.leader != XCB_WINDOW_NONE && one.leader == other.leader) ||
           (one.process != 0 && one.process == other.process && one.windowClass == other.windowClass);
}

void ActivationWatch::settle(const Owner &owner, int epoch)
{
    if (!owner.isOrdinary) {
        return;
    }
    const bool isReturn = m_last && isSameApplication(*m_last, owner);
    m_last = owner;
    if (std::exchange(m_isStarted, true) && !isReturn && epoch == m_epoch) {
        Q_EMIT otherApplicationActivated();
    }
}

} // namespace ostrelle
