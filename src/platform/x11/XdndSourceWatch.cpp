#include "platform/x11/XdndSourceWatch.h"

#include "foundation/TaskScheduler.h"
#include "platform/x11/SelectionOwners.h"
#include "platform/x11/X11RawPointer.h"

#include <QPointer>

#include <xcb/xfixes.h>

#include <utility>

namespace ostrelle {

using namespace std::chrono_literals;

namespace {

constexpr auto kLookInterval = 1s;
/// A source that is busy may send its drop late; after so many looks in a row it has none to send.
constexpr int kLooksWithoutButton = 3;

} // namespace

XdndSourceWatch::XdndSourceWatch(WatchConnection &watch, TaskScheduler &scheduler, const X11RawPointer &pointer,
                                 xcb_window_t source)
    : m_watch(watch)
    , m_pointer(pointer)
    , m_source(source)
    , m_selection(watch.atom("XdndSelection"))
    , m_selectionEvent(watchSelectionOwners(watch, m_selection))
    , m_looks(scheduler.every(kLookInterval, this, [this] { lookAtButton(); }))
    , m_events(watch.onEvent([this](const xcb_generic_event_t &event) { handle(event); }))
{
    const auto cookie = xcb_get_window_attributes(m_watch.xcb(), m_source);
    m_watch.whenReplied(cookie.sequence, [guard = QPointer<XdndSourceWatch>(this)](const void *reply) {
        if (guard) {
            guard->watchWindow(reply);
        }
    });
}

XdndSourceWatch::~XdndSourceWatch()
{
    if (m_isWindowWatched) {
        xcb_change_window_attributes(m_watch.xcb(), m_source, XCB_CW_EVENT_MASK, &m_maskBefore);
        m_watch.flush();
    }
}

void XdndSourceWatch::watchWindow(const void *attributes)
{
    if (!attributes) {
        end();
        return;
    }
    // A window has one event mask per connection, and this one may be another program's main window.
    m_maskBefore = static_cast<const xcb_get_window_attributes_reply_t *>(attributes)->your_event_mask;
    const std::uint32_t mask = m_maskBefore | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(m_watch.xcb(), m_source, XCB_CW_EVENT_MASK, &mask);
    m_isWindowWatched = true;
}

void XdndSourceWatch::handle(const xcb_generic_event_t &event)
{
    const int type = event.response_type & 0x7f;
    if (type == XCB_DESTROY_NOTIFY) {
        if (reinterpret_cast<const xcb_destroy_notify_event_t &>(event).window == m_source) {
            end();
        }
    } else if (m_selectionEvent != 0 && type == m_selectionEvent) {
        const auto &notify = reinterpret_cast<const xcb_xfixes_selection_notify_event_t &>(event);
        // A change of owner is none: a source may give the selection up after its drop, or take it for each drag.
        if (notify.selection == m_selection && notify.subtype != XCB_XFIXES_SELECTION_EVENT_SET_SELECTION_OWNER) {
            end();
        }
    }
}

void XdndSourceWatch::lookAtButton()
{
    const auto pointer = m_pointer.state();
    m_looksWithoutButton = pointer && !pointer->isButtonHeld ? m_looksWithoutButton + 1 : 0;
    if (m_looksWithoutButton >= kLooksWithoutButton) {
        end();
    }
}

void XdndSourceWatch::end()
{
    if (std::exchange(m_isOver, true)) {
        return;
    }
    m_looks.cancel();
    // Later, since the listener may destroy this from within one of its own handlers.
    QMetaObject::invokeMethod(
        this, [this] { Q_EMIT gone(); }, Qt::QueuedConnection);
}

} // namespace ostrelle
