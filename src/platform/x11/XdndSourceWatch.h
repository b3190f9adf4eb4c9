#pragma once

#include "foundation/Task.h"
#include "platform/x11/WatchConnection.h"

#include <QObject>

namespace ostrelle {

class TaskScheduler;
class X11RawPointer;

/// Watches the source of one drag, which may end without a word: its window or the drag's selection goes with its
/// program, or the button is let go and nothing follows. Destroying it ends the watch. Main thread.
class XdndSourceWatch : public QObject
{
    Q_OBJECT
public:
    XdndSourceWatch(WatchConnection &watch, TaskScheduler &scheduler, const X11RawPointer &pointer,
                    xcb_window_t source);
    ~XdndSourceWatch() override;

    /// The source has spoken.
    void restart() { m_looksWithoutButton = 0; }

Q_SIGNALS:
    /// The drag cannot go on; emitted once, from the event loop.
    void gone();

private:
    void handle(const xcb_generic_event_t &event);
    void watchWindow(const void *attributes);
    void lookAtButton();
    void end();

    WatchConnection &m_watch;
    const X11RawPointer &m_pointer;
    const xcb_window_t m_source;
    const xcb_atom_t m_selection;
    const int m_selectionEvent;
    std::uint32_t m_maskBefore = 0; ///< what else this connection wants to hear of that window
    bool m_isWindowWatched = false;
    int m_looksWithoutButton = 0;
    bool m_isOver = false;
    Task m_looks;
    WatchConnection::Subscription m_events;
};

} // namespace ostrelle
