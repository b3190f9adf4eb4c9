#include "platform/x11/X11DragSense.h"

#include "platform/x11/X11RawPointer.h"

#include <xcb/xfixes.h>

namespace ostrelle {

X11DragSense::X11DragSense(WatchConnection &watch, const X11RawPointer &pointer)
    : m_pointer(pointer)
    , m_selection(watch.atom("XdndSelection"))
    , m_fixesEvent(watch.firstEvent(&xcb_xfixes_id) + XCB_XFIXES_SELECTION_NOTIFY)
    , m_subscription(watch.onEvent([this](const xcb_generic_event_t &event) { handle(event); }))
{
    if (watch.firstEvent(&xcb_xfixes_id)) {
        xcb_discard_reply(watch.xcb(), xcb_xfixes_query_version(watch.xcb(), 5, 0).sequence);
        xcb_xfixes_select_selection_input(watch.xcb(), watch.root(), m_selection,
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                              XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                              XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
        watch.flush();
    }
}

Answer X11DragSense::isButtonHeld() const
{
    const auto pointer = m_pointer.state();
    if (!pointer) {
        return Answer::Unknown;
    }
    return pointer->isButtonHeld ? Answer::Yes : Answer::No;
}

void X11DragSense::handle(const xcb_generic_event_t &event)
{
    if ((event.response_type & 0x7f) != m_fixesEvent) {
        return;
    }
    const auto &notify = reinterpret_cast<const xcb_xfixes_selection_notify_event_t &>(event);
    // A source may give the selection up at the end of its drag: that is no new one.
    if (notify.selection == m_selection && notify.subtype == XCB_XFIXES_SELECTION_EVENT_SET_SELECTION_OWNER &&
        notify.owner != XCB_WINDOW_NONE) {
        ++m_changeCount;
    }
}

} // namespace ostrelle
