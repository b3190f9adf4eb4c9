#pragma once

#include "platform/freedesktop/ApplicationIdentity.h"
#include "platform/x11/WatchConnection.h"

#include <QObject>

#include <functional>

namespace ostrelle {

/// What a window says about its application: WM_CLASS, _GTK_APPLICATION_ID, and the process behind it as the server
/// knows it (X-Resource 1.2; _NET_WM_PID is a number of its own inside a sandbox). A window without a class is asked
/// for the one it belongs to. Destroying it is the cancel. Main thread.
class X11WindowFacts : public QObject
{
    Q_OBJECT
public:
    /// Asks the server beforehand for what asking a window needs to know; once per connection, blocking for a moment.
    static void prepare(WatchConnection &connection);

    /// `done` is called once, from the event loop, with the process id, 0 when unknown, and may destroy this.
    X11WindowFacts(WatchConnection &connection, xcb_window_t window,
                   std::function<void(ApplicationFacts facts, qint64 pid)> done);

    /// What has been learnt so far.
    const ApplicationFacts &facts() const { return m_facts; }

private:
    void ask(xcb_window_t window);
    void askForText(xcb_window_t window, const char *property, std::function<void(QByteArray)> take);
    void askForWindow(xcb_window_t window, const char *property, xcb_window_t &into);
    void askForProcess(xcb_window_t window);
    void whenReplied(unsigned int sequence, std::function<void(const void *)> take);
    void finishRound();

    WatchConnection &m_connection;
    std::function<void(ApplicationFacts, qint64)> m_done;
    ApplicationFacts m_facts;
    qint64 m_pid = 0;
    xcb_window_t m_window = XCB_WINDOW_NONE;
    xcb_window_t m_transientFor = XCB_WINDOW_NONE;
    xcb_window_t m_leader = XCB_WINDOW_NONE;
    int m_pending = 0;
    int m_hops = 0;
};

} // namespace ostrelle
