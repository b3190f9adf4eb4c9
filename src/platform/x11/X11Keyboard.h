#pragma once

#include "foundation/Task.h"
#include "platform/KeyboardLayout.h"
#include "platform/x11/WatchConnection.h"
#include "platform/x11/X11KeyboardMap.h"

namespace ostrelle {

class TaskScheduler;

/// The server's keyboard map, read when it is first asked for and again whenever it has changed. From then on a held
/// key sends presses and no releases on the watch connection, until it is really released.
class X11Keyboard final : public KeyboardLayout
{
    Q_OBJECT
public:
    X11Keyboard(WatchConnection &watch, TaskScheduler &scheduler, QObject *parent = nullptr);

    QMap<quint32, QString> keyNames() const override { return board().names; }
    std::optional<quint32> keyCodeOf(const QKeyEvent &event) const override;

    /// Of a server without the keyboard extension: a map without keys.
    const X11KeyboardMap &map() const { return board().map; }

Q_SIGNALS:
    /// Places or modifiers may be others; told a moment after the last of several changes.
    void mapChanged();

private:
    struct Board
    {
        X11KeyboardMap map;
        std::optional<std::size_t> latinLayout; ///< the last current one that has Latin letters
        QMap<quint32, QString> names;

        void useLayout(std::size_t layout);
    };

    const Board &board() const;
    Board read() const;
    void startWatching() const;
    void handle(const xcb_generic_event_t &event);
    void reread();
    void setCurrentLayout(std::size_t layout);

    WatchConnection &m_watch;
    TaskScheduler &m_scheduler;
    Task m_reread;
    mutable std::optional<Board>
        m_board; // reading it takes milliseconds, which the start of the program can do without
    WatchConnection::Subscription m_subscription;
};

} // namespace ostrelle
