#include "platform/x11/X11WindowFacts.h"

#include <QPointer>

#include <xcb/res.h>

#include <cstring>
#include <utility>

namespace ostrelle {

namespace {

/// A dialog of a dialog of a window; more is a loop.
constexpr int kMostHops = 4;
constexpr std::uint32_t kLongestText = 1024; // bytes

constexpr char kClass[] = "WM_CLASS";
constexpr char kToolkitId[] = "_GTK_APPLICATION_ID";
constexpr char kTransientFor[] = "WM_TRANSIENT_FOR";
constexpr char kLeader[] = "WM_CLIENT_LEADER";
constexpr char kProcess[] = "_NET_WM_PID";

QByteArray textIn(const void *reply)
{
    const auto *property = static_cast<const xcb_get_property_reply_t *>(reply);
    if (!property || property->format != 8) {
        return {};
    }
    return QByteArray(static_cast<const char *>(xcb_get_property_value(property)),
                      xcb_get_property_value_length(property));
}

std::uint32_t numberIn(const void *reply)
{
    const auto *property = static_cast<const xcb_get_property_reply_t *>(reply);
    std::uint32_t number = 0;
    if (property && property->format == 32 && xcb_get_property_value_length(property) >= 4) {
        std::memcpy(&number, xcb_get_property_value(property), sizeof number);
    }
    return number;
}

} // namespace

void X11WindowFacts::prepare(WatchConnection &connection)
{
    for (const char *property : {kClass, kToolkitId, kTransientFor, kLeader, kProcess}) {
        connection.atom(property);
    }
    const auto *resources = xcb_get_extension_data(connection.xcb(), &xcb_res_id);
    if (resources && resources->present) {
        xcb_discard_reply(connection.xcb(), xcb_res_query_version(connection.xcb(), 1, 2).sequence);
    }
}

X11WindowFacts::X11WindowFacts(WatchConnection &connection, xcb_window_t window,
                               std::function<void(ApplicationFacts, qint64)> done)
    : m_connection(connection)
    , m_done(std::move(done))
{
    ask(window);
}

void X11WindowFacts::ask(xcb_window_t window)
{
    m_window = window;
    m_transientFor = XCB_WINDOW_NONE;
    m_leader = XCB_WINDOW_NONE;
    askForText(window, kClass, [this](const QByteArray &text) {
        const QByteArrayList parts = text.split('\0');
        m_facts.classInstance = QString::fromUtf8(parts.value(0));
        m_facts.className = QString::fromUtf8(parts.value(1));
    });
    askForText(window, kToolkitId, [this](const QByteArray &text) {
        if (!text.isEmpty()) {
            m_facts.toolkitId = QString::fromUtf8(text.split('\0').first());
        }
    });
    askForWindow(window, kTransientFor, m_transientFor);
    askForWindow(window, kLeader, m_leader);
    if (m_pid == 0) {
        askForProcess(window);
    }
}

void X11WindowFacts::askForText(xcb_window_t window, const char *property, std::function<void(QByteArray)> take)
{
    const auto cookie = xcb_get_property(m_connection.xcb(), 0, window, m_connection.atom(property),
                                         XCB_GET_PROPERTY_TYPE_ANY, 0, kLongestText / 4);
    whenReplied(cookie.sequence, [take = std::move(take)](const void *reply) { take(textIn(reply)); });
}

void X11WindowFacts::askForWindow(xcb_window_t window, const char *property, xcb_window_t &into)
{
    const auto cookie =
        xcb_get_property(m_connection.xcb(), 0, window, m_connection.atom(property), XCB_ATOM_WINDOW, 0, 1);
    whenReplied(cookie.sequence, [&into](const void *reply) { into = numberIn(reply); });
}

void X11WindowFacts::askForProcess(xcb_window_t window)
{
    const auto *resources = xcb_get_extension_data(m_connection.xcb(), &xcb_res_id);
    if (!resources || !resources->present) {
        const auto claimed =
            xcb_get_property(m_connection.xcb(), 0, window, m_connection.atom(kProcess), XCB_ATOM_CARDINAL, 0, 1);
        whenReplied(claimed.sequence, [this](const void *reply) { m_pid = numberIn(reply); });
        return;
    }
    const xcb_res_client_id_spec_t spec{window, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
    const auto cookie = xcb_res_query_client_ids(m_connection.xcb(), 1, &spec);
    whenReplied(cookie.sequence, [this](const void *reply) {
        if (!reply) {
            return;
        }
        auto ids = xcb_res_query_client_ids_ids_iterator(static_cast<const xcb_res_query_client_ids_reply_t *>(reply));
        for (; ids.rem > 0; xcb_res_client_id_value_next(&ids)) {
            if ((ids.data->spec.mask & XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID) != 0 &&
                xcb_res_client_id_value_value_length(ids.data) > 0) {
                m_pid = *xcb_res_client_id_value_value(ids.data);
            }
        }
    });
}

void X11WindowFacts::whenReplied(unsigned int sequence, std::function<void(const void *)> take)
{
    ++m_pending;
    m_connection.whenReplied(sequence,
                             [guard = QPointer<X11WindowFacts>(this), take = std::move(take)](const void *reply) {
                                 if (!guard) {
                                     return;
                                 }
                                 take(reply);
                                 if (--guard->m_pending == 0) {
                                     guard->finishRound();
                                 }
                             });
}

void X11WindowFacts::finishRound()
{
    const xcb_window_t next = m_transientFor != XCB_WINDOW_NONE ? m_transientFor : m_leader;
    const bool isNamed = !m_facts.className.isEmpty() || !m_facts.classInstance.isEmpty();
    if (!isNamed && next != XCB_WINDOW_NONE && next != m_window && ++m_hops < kMostHops) {
        ask(next);
        return;
    }
    const auto done = std::move(m_done);
    done(m_facts, m_pid);
}

} // namespace ostrelle
