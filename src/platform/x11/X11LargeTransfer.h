#pragma once

#include "platform/x11/X11SelectionTransfer.h"

#include <QObject>

#include <atomic>
#include <functional>
#include <thread>

namespace ostrelle {

/// Reads the rest of a conversion whose first property was already seen: a thread with a connection of its own, so that
/// growing buffers never hold up the main loop. It knows no time; the caller watches progress() and destroys it, which
/// ends the thread at once and answers nothing.
class X11LargeTransfer : public QObject
{
    Q_OBJECT
public:
    /// `done` is called once, on this object's thread, from the event loop.
    X11LargeTransfer(xcb_window_t window, xcb_atom_t property, xcb_atom_t incr,
                     const X11SelectionTransfer::Request &request,
                     std::function<void(X11SelectionTransfer::Result)> done);
    ~X11LargeTransfer() override;

    /// Moves with each piece that arrives.
    quint64 progress() const { return m_progress.load(std::memory_order_relaxed); }

private:
    void run();
    X11SelectionTransfer::Result receive(xcb_connection_t *xcb);
    /// Appends one property's value; the result is set when that ended the transfer.
    bool append(xcb_connection_t *xcb, X11SelectionTransfer::Result &result, bool &isEmpty);
    /// False when told to stop or the server is gone.
    bool waitForNewValue(xcb_connection_t *xcb);

    const xcb_window_t m_window;
    const xcb_atom_t m_property;
    const xcb_atom_t m_incr;
    const qint64 m_cap;
    const X11SelectionTransfer::Overflow m_overflow;
    std::function<void(X11SelectionTransfer::Result)> m_done;
    std::atomic<quint64> m_progress = 0;
    int m_stop = -1; ///< eventfd, readable when the thread is to end
    std::thread m_thread;
};

} // namespace ostrelle
