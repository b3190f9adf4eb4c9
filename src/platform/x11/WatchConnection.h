#pragma once

#include <QByteArray>
#include <QObject>

#include <functional>
#include <memory>

#include <xcb/xcb.h>

namespace ostrelle {

/// The backend's own connection to the X server, beside the toolkit's: watches selections, buttons, focus, screens and
/// reads foreign selections without ever blocking on another program. Events and replies are delivered from the event
/// loop, in the order in which the server sent them. Changes of the root window's properties are always among them.
/// Main thread.
class WatchConnection : public QObject
{
    Q_OBJECT
    struct State;

public:
    /// Ends the subscription when destroyed; nothing is called afterwards.
    class [[nodiscard]] Subscription
    {
    public:
        Subscription();
        ~Subscription();
        Subscription(Subscription &&other) noexcept;
        Subscription &operator=(Subscription &&other) noexcept;

    private:
        friend class WatchConnection;
        struct Token;
        explicit Subscription(std::shared_ptr<Token> token); // shared with the connection's list, which may end first
        std::shared_ptr<Token> m_token;
    };

    using EventHandler = std::function<void(const xcb_generic_event_t &event)>;
    /// `reply` is null on an error; freed after the call.
    using ReplyHandler = std::function<void(const void *reply)>;

    /// Connects; null when there is no display.
    static std::unique_ptr<WatchConnection> open();
    explicit WatchConnection(std::unique_ptr<State> state); ///< only open() can make a state
    ~WatchConnection() override;

    xcb_connection_t *xcb() const;
    const xcb_screen_t &screen() const;
    int screenNumber() const; ///< part of the names of some selections
    xcb_window_t root() const;
    /// Interned once and kept; a round trip for a name seen for the first time.
    xcb_atom_t atom(const char *name);
    /// First event number of an extension, 0 when the server lacks it.
    int firstEvent(xcb_extension_t *extension);

    Subscription onEvent(EventHandler handler);
    /// Calls `handler` with the reply to the request of this sequence number when it arrives.
    void whenReplied(unsigned int sequence, ReplyHandler handler);
    /// Sends what is buffered and handles what a synchronous reply may have queued.
    void flush();
    /// The window belongs to this process (either connection).
    bool isOwn(xcb_window_t window) const;

Q_SIGNALS:
    /// The server is gone; emitted once.
    void lost();

private:
    void drain();

    std::unique_ptr<State> m_state;
};

} // namespace ostrelle
