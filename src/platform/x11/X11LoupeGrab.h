#pragma once

#include "foundation/Task.h"

#include <QObject>

#include <functional>

#include <xcb/xcb.h>

namespace ostrelle {

class TaskScheduler;
class WatchConnection;

/// Takes the pointer, without a picture, and the keyboard of the whole desktop. Another program may hold either for a
/// moment (a menu that closes, a key of a shortcut that is still down), so it is tried again for a while. Both are free
/// again when this is destroyed.
class X11LoupeGrab final : public QObject
{
    Q_OBJECT
public:
    struct Handlers
    {
        std::function<void()> taken;  ///< the pointer; the keyboard may be somebody else's for some more time
        std::function<void()> failed; ///< for good
    };

    /// Calls no handler from within.
    X11LoupeGrab(WatchConnection &connection, TaskScheduler &scheduler, Handlers handlers);
    ~X11LoupeGrab() override;

    /// Gives both back at once; no handler is called afterwards.
    void release();

private:
    void tryAgain();
    bool grabPointer();
    bool grabKeyboard();

    WatchConnection &m_connection;
    TaskScheduler &m_scheduler;
    Handlers m_handlers;
    xcb_cursor_t m_cursor;
    bool m_hasPointer = false;
    bool m_hasKeyboard = false;
    bool m_isTold = false;
    std::chrono::nanoseconds m_started;
    Task m_attempt;
};

} // namespace ostrelle
