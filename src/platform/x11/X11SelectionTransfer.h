#pragma once

#include "foundation/Task.h"
#include "platform/ClipboardPort.h"
#include "platform/x11/WatchConnection.h"

#include <QByteArray>
#include <QObject>

#include <functional>
#include <memory>

namespace ostrelle {

class TaskScheduler;
class X11LargeTransfer;

/// One conversion of a selection (ICCCM 2.4, INCR included), without ever waiting for its owner: each step has a
/// deadline, and so has the whole. What is small is read on the watch connection; what comes in increments, or is
/// large, on a thread of its own. Destroying it is the cancel: nothing is answered then. Main thread.
class X11SelectionTransfer : public QObject
{
    Q_OBJECT
public:
    /// What becomes of content beyond the cap.
    enum class Overflow { Refuse, Cut };

    struct Request
    {
        xcb_atom_t selection = XCB_ATOM_NONE;
        xcb_atom_t target = XCB_ATOM_NONE;
        xcb_timestamp_t time = XCB_CURRENT_TIME; ///< of the event that announced the content
        qint64 cap = ClipboardPort::kReadCap;    ///< bytes that are kept at most
        Overflow overflow = Overflow::Refuse;
    };

    struct Result
    {
        /// Of a transfer that brought nothing.
        static Result without(ClipboardContent::Outcome outcome);

        ClipboardContent::Outcome outcome = ClipboardContent::Outcome::Absent; ///< Absent: the owner refused
        QByteArray bytes;
        xcb_atom_t type = XCB_ATOM_NONE; ///< none when the owner agreed and then gave nothing
        int unitBits = 0;                ///< 8, 16 or 32; 0 when nothing was given
        bool isCut = false;              ///< there was more
    };

    /// Asks at once; `done` is called once, from the event loop, and may destroy the transfer.
    X11SelectionTransfer(WatchConnection &connection, TaskScheduler &scheduler, const Request &request,
                         std::function<void(Result)> done);
    ~X11SelectionTransfer() override;

private:
    void handleEvent(const xcb_generic_event_t &event);
    void probe();
    void handleProbe(const void *reply);
    void goOnElsewhere();
    void watchProgress();
    void finish(Result result);

    WatchConnection &m_connection;
    TaskScheduler &m_scheduler;
    Request m_request;
    std::function<void(Result)> m_done;
    xcb_window_t m_window = XCB_WINDOW_NONE;
    xcb_atom_t m_property = XCB_ATOM_NONE;
    xcb_atom_t m_incr = XCB_ATOM_NONE;
    WatchConnection::Subscription m_events;
    std::unique_ptr<X11LargeTransfer> m_large;
    Task m_deadline;
    int m_ticks = 0;
    int m_idleTicks = 0;
    quint64 m_lastProgress = 0;
    bool m_isFinished = false;
};

} // namespace ostrelle
