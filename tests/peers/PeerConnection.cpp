#include "peers/PeerConnection.h"

#include <poll.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>

namespace ostrelle {

namespace {

constexpr int kLookAgainMs = 100;
constexpr int kIdsApart = 997;

} // namespace

PeerConnection::PeerConnection()
    : m_xcb(xcb_connect(nullptr, nullptr))
{
    if (xcb_connection_has_error(m_xcb)) {
        std::fputs("peer: no display\n", stderr);
        std::exit(EXIT_FAILURE);
    }
    m_root = xcb_setup_roots_iterator(xcb_get_setup(m_xcb)).data->root;
    // The server gives this program the ids of one that has just ended, and the window manager may not have missed that
    // one's window yet.
    for (int i = getpid() % kIdsApart; i >= 0; --i) {
        m_window = xcb_generate_id(m_xcb);
    }
    const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(m_xcb, XCB_COPY_FROM_PARENT, m_window, m_root, 40, 400, 200, 100, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &mask);
}

PeerConnection::~PeerConnection()
{
    xcb_disconnect(m_xcb);
}

xcb_atom_t PeerConnection::atom(const std::string &name)
{
    const auto cookie = xcb_intern_atom(m_xcb, 0, static_cast<std::uint16_t>(name.size()), name.c_str());
    const PeerReply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(m_xcb, cookie, nullptr));
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

std::string PeerConnection::name(xcb_atom_t atom)
{
    const PeerReply<xcb_get_atom_name_reply_t> reply(
        xcb_get_atom_name_reply(m_xcb, xcb_get_atom_name(m_xcb, atom), nullptr));
    return reply ? std::string(xcb_get_atom_name_name(reply.get()),
                               static_cast<std::size_t>(xcb_get_atom_name_name_length(reply.get())))
                 : std::string();
}

xcb_timestamp_t PeerConnection::serverTime()
{
    const xcb_atom_t property = atom("_PEER_TIME");
    xcb_change_property(m_xcb, XCB_PROP_MODE_APPEND, m_window, property, XCB_ATOM_INTEGER, 32, 0, nullptr);
    while (const auto event = nextEvent()) {
        const auto *notify = reinterpret_cast<const xcb_property_notify_event_t *>(event.get());
        if ((event->response_type & 0x7f) == XCB_PROPERTY_NOTIFY && notify->atom == property) {
            return notify->time;
        }
    }
    return XCB_CURRENT_TIME;
}

void PeerConnection::takeSelection(xcb_atom_t selection)
{
    xcb_set_selection_owner(m_xcb, m_window, selection, serverTime());
    if (ownerOf(selection) != m_window) {
        std::fputs("peer: the selection was not to be had\n", stderr);
        std::exit(EXIT_FAILURE);
    }
}

xcb_window_t PeerConnection::ownerOf(xcb_atom_t selection)
{
    const PeerReply<xcb_get_selection_owner_reply_t> reply(
        xcb_get_selection_owner_reply(m_xcb, xcb_get_selection_owner(m_xcb, selection), nullptr));
    return reply ? reply->owner : xcb_window_t{XCB_WINDOW_NONE};
}

void PeerConnection::showWindow(const std::string &windowClass)
{
    std::string instanceAndClass = windowClass;
    instanceAndClass += '\0';
    instanceAndClass += windowClass;
    instanceAndClass += '\0';
    put(m_window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, instanceAndClass);
    put(m_window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, windowClass);
    const xcb_atom_t windowManager = atom("_NET_SUPPORTING_WM_CHECK");
    const xcb_atom_t active = atom("_NET_ACTIVE_WINDOW");
    watch(m_root);
    while (windowIn(windowManager) == XCB_WINDOW_NONE) {
        waitForChange();
    }
    // A window manager that is just starting loses requests, and gives the focus to nobody by itself.
    while (windowIn(active) != m_window) {
        xcb_map_window(m_xcb, m_window);
        askForActivation(active);
        waitForChange();
    }
}

void PeerConnection::askForActivation(xcb_atom_t active)
{
    xcb_client_message_event_t request{};
    request.response_type = XCB_CLIENT_MESSAGE;
    request.format = 32;
    request.window = m_window;
    request.type = active;
    request.data.data32[0] = 2; // as from a taskbar
    xcb_send_event(m_xcb, 0, m_root, XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char *>(&request));
}

void PeerConnection::waitForChange()
{
    xcb_flush(m_xcb);
    pollfd watched{xcb_get_file_descriptor(m_xcb), POLLIN, 0};
    poll(&watched, 1, kLookAgainMs);
    while (PeerReply<xcb_generic_event_t>(xcb_poll_for_event(m_xcb))) {
    }
    if (xcb_connection_has_error(m_xcb)) {
        std::exit(EXIT_FAILURE);
    }
}

xcb_window_t PeerConnection::windowIn(xcb_atom_t property)
{
    const PeerReply<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(m_xcb, xcb_get_property(m_xcb, 0, m_root, property, XCB_ATOM_WINDOW, 0, 1), nullptr));
    xcb_window_t window = XCB_WINDOW_NONE;
    if (reply && xcb_get_property_value_length(reply.get()) >= 4) {
        std::memcpy(&window, xcb_get_property_value(reply.get()), sizeof window);
    }
    return window;
}

PeerReply<xcb_generic_event_t> PeerConnection::nextEvent()
{
    xcb_flush(m_xcb);
    return PeerReply<xcb_generic_event_t>(xcb_wait_for_event(m_xcb));
}

void PeerConnection::put(xcb_window_t window, xcb_atom_t property, xcb_atom_t type,
                         const std::vector<std::uint32_t> &words)
{
    xcb_change_property(m_xcb, XCB_PROP_MODE_REPLACE, window, property, type, 32,
                        static_cast<std::uint32_t>(words.size()), words.data());
}

void PeerConnection::put(xcb_window_t window, xcb_atom_t property, xcb_atom_t type, const std::string &bytes)
{
    xcb_change_property(m_xcb, XCB_PROP_MODE_REPLACE, window, property, type, 8,
                        static_cast<std::uint32_t>(bytes.size()), bytes.data());
}

PeerReply<xcb_get_property_reply_t> PeerConnection::take(xcb_window_t window, xcb_atom_t property)
{
    return PeerReply<xcb_get_property_reply_t>(xcb_get_property_reply(
        m_xcb, xcb_get_property(m_xcb, 1, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, 1024 * 1024), nullptr));
}

void PeerConnection::notify(const xcb_selection_request_event_t &request, xcb_atom_t property)
{
    xcb_selection_notify_event_t answer{};
    answer.response_type = XCB_SELECTION_NOTIFY;
    answer.time = request.time;
    answer.requestor = request.requestor;
    answer.selection = request.selection;
    answer.target = request.target;
    answer.property = property;
    xcb_send_event(m_xcb, 0, request.requestor, 0, reinterpret_cast<const char *>(&answer));
}

void PeerConnection::watch(xcb_window_t window)
{
    const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(m_xcb, window, XCB_CW_EVENT_MASK, &mask);
}

void tell(const std::string &line)
{
    std::puts(line.c_str());
    std::fflush(stdout);
}

} // namespace ostrelle
