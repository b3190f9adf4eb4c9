#include "platform/x11/X11DragSense.h"

#include "platform/x11/SelectionOwners.h"
#include "platform/x11/X11RawPointer.h"

#include <xcb/xfixes.h>

namespace ostrelle {

X11DragSense::X11DragSense(WatchConnection &watch, const X11RawPointer &pointer, QObject *parent)
    : DragSense(parent)
    , m_pointer(pointer)
    , m_selection(watch.atom("XdndSelection"))
    , m_fixesEvent(watchSelectionOwners(watch, m_selection))
    , m_subscription(watch.onEvent([this](const xcb_generic_event_t &event) { handle(event); }))
{
    // Presses and owners come on the same connection, hence in the order in which they happened.
    connect(&pointer, &X11RawPointer::pressed, this, [this] { m_countAtPress = m_changeCount; });
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
    if (m_fixesEvent == 0 || (event.response_type & 0x7f) != m_fixesEvent) {
        return;
    }
    const auto &notify = reinterpret_cast<const xcb_xfixes_selection_notify_event_t &>(event);
    // A source may give the selection up at the end of its drag: that is no new one.
    if (notify.selection == m_selection && notify.subtype == XCB_XFIXES_SELECTION_EVENT_SET_SELECTION_OWNER &&
        notify.owner != XCB_WINDOW_NONE) {
        ++m_changeCount;
        Q_EMIT changed();
    }
}

} // namespace ostrelle
