#pragma once

#include "platform/x11/WatchConnection.h"

#include <QObject>
#include <QString>

#include <functional>

namespace ostrelle {

class TaskScheduler;

/// Gives what the program has on the clipboard to somebody who stays: the clipboard manager (freedesktop.org clipboard
/// manager specification, SAVE_TARGETS), else a process of its own. Main thread.
class X11ClipboardHandOver : public QObject
{
    Q_OBJECT
public:
    X11ClipboardHandOver(WatchConnection &connection, TaskScheduler &scheduler, const QString &keeperPath);

    /// Returns when the content is safe, or nobody took it: after about a second at most. The event loop runs
    /// meanwhile, without the user's input, since it is the toolkit that serves the content to the manager.
    void run();

private:
    bool isOwner();
    bool giveToManager();
    void giveToKeeper();
    /// Runs the event loop until `condition` or the deadline; whether it was the condition.
    bool waitFor(std::chrono::milliseconds deadline, const std::function<bool()> &condition);

    WatchConnection &m_connection;
    TaskScheduler &m_scheduler;
    QString m_keeperPath;
    xcb_atom_t m_clipboard;
    xcb_window_t m_owner = XCB_WINDOW_NONE;
};

} // namespace ostrelle
