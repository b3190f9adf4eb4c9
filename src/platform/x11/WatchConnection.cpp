#include "platform/x11/WatchConnection.h"

#include "platform/x11/ToolkitConnection.h"
#include "platform/x11/XcbReply.h"

#include <QSocketNotifier>

#include <xcb/xcbext.h>

#include <algorithm>
#include <cstring>
#include <deque>
#include <vector>

namespace ostrelle {

namespace {

/// Sequence numbers wrap: "not later than" is the sign of the difference.
bool isNotLater(unsigned int sequence, unsigned int than)
{
    return static_cast<int>(sequence - than) <= 0;
}

bool isAllocatedBy(xcb_window_t window, xcb_connection_t *connection)
{
    const xcb_setup_t *setup = connection ? xcb_get_setup(connection) : nullptr;
    return setup && (window & ~setup->resource_id_mask) == setup->resource_id_base;
}

} // namespace

struct WatchConnection::Subscription::Token
{
    EventHandler handler;
    bool isAlive = true;
};

struct WatchConnection::State
{
    struct Disconnected
    {
        void operator()(xcb_connection_t *c) const { xcb_disconnect(c); }
    };
    struct PendingReply
    {
        unsigned int sequence;
        ReplyHandler handler;
    };

    std::unique_ptr<xcb_connection_t, Disconnected> connection;
    const xcb_screen_t *screen = nullptr;
    int screenNumber = 0;
    std::unique_ptr<QSocketNotifier> notifier;
    std::vector<std::pair<QByteArray, xcb_atom_t>> atoms;
    std::vector<std::shared_ptr<Subscription::Token>> subscriptions;
    std::deque<PendingReply> pending; ///< in the order of their sequence numbers
    bool isDraining = false;
    bool isDrainPosted = false;
    bool isLost = false;

    void drain();
    /// Hands out the replies that have arrived, only those sent before `limit` when it is given; whether there was one.
    bool deliverReplies(const unsigned int *limit);
    void deliver(const xcb_generic_event_t &event);
};

bool WatchConnection::State::deliverReplies(const unsigned int *limit)
{
    bool wasAnswered = false;
    while (!pending.empty() && (!limit || isNotLater(pending.front().sequence, *limit))) {
        void *reply = nullptr;
        xcb_generic_error_t *error = nullptr;
        if (!xcb_poll_for_reply(connection.get(), pending.front().sequence, &reply, &error)) {
            break;
        }
        const XcbReply<void> ownedReply(reply);
        const XcbReply<void> ownedError(error);
        const ReplyHandler handler = std::move(pending.front().handler);
        pending.pop_front();
        handler(reply);
        wasAnswered = true;
    }
    return wasAnswered;
}

void WatchConnection::State::deliver(const xcb_generic_event_t &event)
{
    // A handler may subscribe or unsubscribe, so the list is walked by index and tidied afterwards.
    for (std::size_t i = 0; i < subscriptions.size(); ++i) {
        const std::shared_ptr<Subscription::Token> token = subscriptions[i]; // a handler may end its own subscription
        if (token->isAlive) {
            token->handler(event);
        }
    }
    std::erase_if(subscriptions, [](const auto &token) { return !token->isAlive; });
}

void WatchConnection::State::drain()
{
    if (isDraining) {
        return; // the outer loop goes on until nothing is left
    }
    isDraining = true;
    for (;;) {
        XcbReply<xcb_generic_event_t> event{xcb_poll_for_event(connection.get())};
        if (!event) {
            if (deliverReplies(nullptr))
                continue;
            xcb_flush(connection.get());
            // Sending may have brought events into memory, for which the socket does not become readable.
            event.reset(xcb_poll_for_queued_event(connection.get()));
            if (!event)
                break;
        }
        // An answer sent before this event must be handled before it: an INCR transfer's first PropertyNotify would
        // otherwise be taken for somebody else's.
        const unsigned int sequence = event->full_sequence;
        deliverReplies(&sequence);
        if (event->response_type != 0) // 0: an error about a window that died meanwhile
            deliver(*event);
    }
    isDraining = false;
}

WatchConnection::Subscription::Subscription() = default;

WatchConnection::Subscription::Subscription(std::shared_ptr<Token> token)
    : m_token(std::move(token))
{
}

WatchConnection::Subscription::~Subscription()
{
    if (m_token) {
        m_token->isAlive = false;
    }
}

WatchConnection::Subscription::Subscription(Subscription &&other) noexcept = default;

WatchConnection::Subscription &WatchConnection::Subscription::operator=(Subscription &&other) noexcept
{
    std::swap(m_token, other.m_token);
    Subscription ended(std::move(other));
    return *this;
}

std::unique_ptr<WatchConnection> WatchConnection::open()
{
    auto state = std::make_unique<State>();
    state->connection.reset(xcb_connect(nullptr, &state->screenNumber));
    if (xcb_connection_has_error(state->connection.get())) {
        return nullptr;
    }
    xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(state->connection.get()));
    for (int before = state->screenNumber; before > 0 && screens.rem > 1; --before) {
        xcb_screen_next(&screens);
    }
    state->screen = screens.data;
    // A window has one event mask per connection: everybody's interest in the root's properties is declared here.
    const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(state->connection.get(), state->screen->root, XCB_CW_EVENT_MASK, &mask);
    xcb_flush(state->connection.get());
    return std::make_unique<WatchConnection>(std::move(state));
}

WatchConnection::WatchConnection(std::unique_ptr<State> state)
    : m_state(std::move(state))
{
    m_state->notifier = std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(xcb()), QSocketNotifier::Read);
    connect(m_state->notifier.get(), &QSocketNotifier::activated, this, [this] { drain(); });
}

WatchConnection::~WatchConnection() = default;

void WatchConnection::drain()
{
    m_state->isDrainPosted = false;
    if (m_state->isLost) {
        return;
    }
    m_state->drain();
    if (xcb_connection_has_error(xcb())) {
        m_state->isLost = true;
        m_state->notifier->setEnabled(false);
        Q_EMIT lost();
    }
}

xcb_connection_t *WatchConnection::xcb() const
{
    return m_state->connection.get();
}

const xcb_screen_t &WatchConnection::screen() const
{
    return *m_state->screen;
}

int WatchConnection::screenNumber() const
{
    return m_state->screenNumber;
}

xcb_window_t WatchConnection::root() const
{
    return m_state->screen->root;
}

xcb_atom_t WatchConnection::atom(const char *name)
{
    const QByteArrayView wanted(name);
    const auto known =
        std::find_if(m_state->atoms.begin(), m_state->atoms.end(), [&](const auto &e) { return e.first == wanted; });
    if (known != m_state->atoms.end()) {
        return known->second;
    }
    const auto cookie = xcb_intern_atom(xcb(), 0, static_cast<std::uint16_t>(std::strlen(name)), name);
    const XcbReply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(xcb(), cookie, nullptr));
    flush();
    if (!reply) {
        return XCB_ATOM_NONE;
    }
    m_state->atoms.emplace_back(QByteArray(name), reply->atom);
    return reply->atom;
}

int WatchConnection::firstEvent(xcb_extension_t *extension)
{
    const xcb_query_extension_reply_t *found = xcb_get_extension_data(xcb(), extension);
    return found && found->present ? found->first_event : 0;
}

WatchConnection::Subscription WatchConnection::onEvent(EventHandler handler)
{
    auto token = std::make_shared<Subscription::Token>();
    token->handler = std::move(handler);
    m_state->subscriptions.push_back(token);
    return Subscription(std::move(token));
}

void WatchConnection::whenReplied(unsigned int sequence, ReplyHandler handler)
{
    auto &pending = m_state->pending;
    const auto later = std::find_if(pending.begin(), pending.end(),
                                    [&](const auto &reply) { return !isNotLater(reply.sequence, sequence); });
    pending.insert(later, {sequence, std::move(handler)});
    flush();
}

void WatchConnection::flush()
{
    xcb_flush(xcb());
    if (m_state->isDraining || m_state->isDrainPosted) {
        return; // the loop that runs, or is about to, ends with everything read
    }
    // Reading an answer, or sending, may have moved events into memory, for which the socket does not become readable.
    m_state->isDrainPosted = true;
    QMetaObject::invokeMethod(
        this, [this] { drain(); }, Qt::QueuedConnection);
}

bool WatchConnection::isOwn(xcb_window_t window) const
{
    return isAllocatedBy(window, xcb()) || isAllocatedBy(window, toolkitConnection());
}

} // namespace ostrelle
