#pragma once

#include "platform/Frontmost.h"
#include "platform/freedesktop/ApplicationIdentity.h"
#include "platform/x11/WatchConnection.h"

#include <QObject>

#include <deque>
#include <functional>
#include <memory>
#include <optional>

namespace ostrelle {

class DesktopFileIndex;
class SerialQueue;
class TaskScheduler;
class X11WindowFacts;

/// The last other application that was active, from the window manager's _NET_ACTIVE_WINDOW (EWMH 1.5). Windows of this
/// program, and "none", change nothing: under most window managers that is what the panel's own focus looks like. Who a
/// window belongs to is found out asynchronously as soon as it becomes active. Main thread.
class X11Frontmost : public QObject, public Frontmost
{
    Q_OBJECT
public:
    X11Frontmost(WatchConnection &connection, TaskScheduler &scheduler);
    ~X11Frontmost() override;

    std::optional<Application> application() const override;

    /// Names the present state of affairs, for whenKnown().
    quint64 activation() const { return m_newest; }
    /// Tells who was active at that activation() once it is known: at the latest about a second after it began.
    void whenKnown(quint64 activation, QObject *context, std::function<void(std::optional<Application>)> answer);

private:
    struct Activation;

    void handleEvent(const xcb_generic_event_t &event);
    void askForActiveWindow();
    void handleActiveWindow(quint64 id, const void *reply);
    void identify(quint64 id, const ApplicationFacts &facts, qint64 pid);
    void settle(quint64 id, const std::optional<Application> &application);
    /// The activation, or the oldest that is still remembered; null when there was none.
    Activation *find(quint64 id);
    void forgetOldOnes();

    WatchConnection &m_connection;
    TaskScheduler &m_scheduler;
    WatchConnection::Subscription m_events;
    xcb_atom_t m_activeWindow;
    std::unique_ptr<DesktopFileIndex> m_desktopFiles; ///< touched by the queue only
    std::unique_ptr<SerialQueue> m_queue;             ///< /proc and the desktop files are read there
    std::deque<Activation> m_activations;             ///< oldest first; the settled past is kept for a few
    quint64 m_newest = 0;
};

} // namespace ostrelle
