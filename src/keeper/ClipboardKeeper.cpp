#include "keeper/ClipboardKeeper.h"

#include <poll.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <utility>

namespace ostrelle {

namespace {

constexpr std::size_t kLargestChunk = 256 * 1024;
constexpr std::size_t kMostTransfers = 64;
constexpr std::size_t kMostPairs = 64;
/// When something else has been copied, transfers that stand still for so long are given up.
constexpr int kLastTransfersMs = 5000;

struct Freed
{
    void operator()(void *memory) const { std::free(memory); }
};
template <typename T>
using Reply = std::unique_ptr<T, Freed>;

constexpr std::uint8_t typeOf(const xcb_generic_event_t &event)
{
    return event.response_type & 0x7f;
}

} // namespace

ClipboardKeeper::ClipboardKeeper(KeptContents kept)
    : m_kept(std::move(kept))
    , m_xcb(xcb_connect(nullptr, nullptr))
{
}

ClipboardKeeper::~ClipboardKeeper()
{
    xcb_disconnect(m_xcb);
}

bool ClipboardKeeper::take()
{
    if (xcb_connection_has_error(m_xcb)) {
        return false;
    }
    m_clipboard = atom("CLIPBOARD");
    m_targets = atom("TARGETS");
    m_timestamp = atom("TIMESTAMP");
    m_multiple = atom("MULTIPLE");
    m_atomPair = atom("ATOM_PAIR");
    m_incr = atom("INCR");
    for (const KeptContents::Content &content : m_kept.contents) {
        for (const std::string &type : content.types) {
            m_contents.emplace(atom(type.c_str()), &content.bytes);
        }
    }
    m_chunk = std::min<std::size_t>(kLargestChunk, std::size_t{xcb_get_maximum_request_length(m_xcb)} * 4 / 2);
    m_root = xcb_setup_roots_iterator(xcb_get_setup(m_xcb)).data->root;
    m_window = xcb_generate_id(m_xcb);
    const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(m_xcb, 0, m_window, m_root, -1, -1, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT,
                      XCB_CW_EVENT_MASK, &mask);
    m_time = serverTime();

    // Between looking and taking nobody may copy something newer.
    xcb_grab_server(m_xcb);
    if (m_kept.expectedOwner == XCB_WINDOW_NONE || owner() == m_kept.expectedOwner) {
        xcb_set_selection_owner(m_xcb, m_window, m_clipboard, m_time);
        m_isOwner = owner() == m_window;
    }
    xcb_ungrab_server(m_xcb);
    xcb_flush(m_xcb);
    return m_isOwner;
}

void ClipboardKeeper::run()
{
    while (m_isOwner || !m_transfers.empty()) {
        while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(m_xcb)}) {
            handle(*event);
        }
        xcb_flush(m_xcb);
        if (xcb_connection_has_error(m_xcb)) {
            return;
        }
        pollfd watched{xcb_get_file_descriptor(m_xcb), POLLIN, 0};
        const int ready = poll(&watched, 1, m_isOwner ? -1 : kLastTransfersMs);
        if (ready == 0 || (ready < 0 && errno != EINTR)) {
            return;
        }
    }
}

xcb_atom_t ClipboardKeeper::atom(const char *name)
{
    const Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
        m_xcb, xcb_intern_atom(m_xcb, 0, static_cast<std::uint16_t>(std::strlen(name)), name), nullptr));
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

xcb_timestamp_t ClipboardKeeper::serverTime()
{
    // A property change of no effect brings an event with the server's time.
    xcb_change_property(m_xcb, XCB_PROP_MODE_APPEND, m_window, m_timestamp, XCB_ATOM_INTEGER, 32, 0, nullptr);
    xcb_flush(m_xcb);
    while (const Reply<xcb_generic_event_t> event{xcb_wait_for_event(m_xcb)}) {
        if (typeOf(*event) == XCB_PROPERTY_NOTIFY) {
            return reinterpret_cast<const xcb_property_notify_event_t *>(event.get())->time;
        }
    }
    return XCB_CURRENT_TIME;
}

xcb_window_t ClipboardKeeper::owner()
{
    const Reply<xcb_get_selection_owner_reply_t> reply(
        xcb_get_selection_owner_reply(m_xcb, xcb_get_selection_owner(m_xcb, m_clipboard), nullptr));
    return reply ? reply->owner : xcb_window_t{XCB_WINDOW_NONE};
}

void ClipboardKeeper::handle(const xcb_generic_event_t &event)
{
    switch (typeOf(event)) {
    case 0: // a requestor's window is gone
        forget(reinterpret_cast<const xcb_generic_error_t &>(event).resource_id);
        break;
    case XCB_SELECTION_CLEAR:
        m_isOwner = false;
        break;
    case XCB_SELECTION_REQUEST:
        handleRequest(reinterpret_cast<const xcb_selection_request_event_t &>(event));
        break;
    case XCB_PROPERTY_NOTIFY: {
        const auto &notify = reinterpret_cast<const xcb_property_notify_event_t &>(event);
        if (notify.state == XCB_PROPERTY_DELETE) {
            sendNext(notify.window, notify.atom);
        }
        break;
    }
    case XCB_DESTROY_NOTIFY:
        forget(reinterpret_cast<const xcb_destroy_notify_event_t &>(event).window);
        break;
    default:
        break;
    }
}

void ClipboardKeeper::handleRequest(const xcb_selection_request_event_t &request)
{
    // Requestors older than ICCCM 1 name no property and mean the target's.
    const xcb_atom_t property = request.property != XCB_ATOM_NONE ? request.property : request.target;
    const bool isInTime = request.time == XCB_CURRENT_TIME || static_cast<std::int32_t>(request.time - m_time) >= 0;
    const bool isConverted = isInTime && request.selection == m_clipboard && request.requestor != m_window &&
                             (request.target == m_multiple ? convertMultiple(request.requestor, property)
                                                           : convert(request.requestor, request.target, property));
    xcb_selection_notify_event_t notify{};
    notify.response_type = XCB_SELECTION_NOTIFY;
    notify.time = request.time;
    notify.requestor = request.requestor;
    notify.selection = request.selection;
    notify.target = request.target;
    notify.property = isConverted ? property : xcb_atom_t{XCB_ATOM_NONE};
    xcb_send_event(m_xcb, 0, request.requestor, XCB_EVENT_MASK_NO_EVENT, reinterpret_cast<const char *>(&notify));
}

bool ClipboardKeeper::convert(xcb_window_t requestor, xcb_atom_t target, xcb_atom_t property)
{
    if (target == m_targets) {
        std::vector<std::uint32_t> atoms{m_targets, m_timestamp, m_multiple};
        for (const auto &[type, bytes] : m_contents) {
            atoms.push_back(type);
        }
        put(requestor, property, XCB_ATOM_ATOM, atoms);
        return true;
    }
    if (target == m_timestamp) {
        put(requestor, property, XCB_ATOM_INTEGER, {m_time});
        return true;
    }
    const auto found = m_contents.find(target);
    if (found == m_contents.end()) {
        return false;
    }
    const std::vector<std::uint8_t> &bytes = *found->second;
    if (bytes.size() <= m_chunk) {
        xcb_change_property(m_xcb, XCB_PROP_MODE_REPLACE, requestor, property, target, 8,
                            static_cast<std::uint32_t>(bytes.size()), bytes.data());
        return true;
    }
    m_transfers.remove_if(
        [&](const Transfer &other) { return other.requestor == requestor && other.property == property; });
    if (m_transfers.size() >= kMostTransfers) {
        m_transfers.pop_front(); // the one that has been standing longest
    }
    const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(m_xcb, requestor, XCB_CW_EVENT_MASK, &mask);
    m_transfers.push_back({requestor, property, target, &bytes, 0});
    put(requestor, property, m_incr, {static_cast<std::uint32_t>(bytes.size())});
    return true;
}

bool ClipboardKeeper::convertMultiple(xcb_window_t requestor, xcb_atom_t property)
{
    const Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(
        m_xcb, xcb_get_property(m_xcb, 0, requestor, property, m_atomPair, 0, kMostPairs * 2), nullptr));
    if (!reply || reply->format != 32) {
        return false;
    }
    const auto *words = static_cast<const std::uint32_t *>(xcb_get_property_value(reply.get()));
    std::vector<std::uint32_t> pairs(words, words + xcb_get_property_value_length(reply.get()) / 4);
    for (std::size_t i = 0; i + 1 < pairs.size(); i += 2) {
        if (pairs[i] == m_multiple || pairs[i + 1] == XCB_ATOM_NONE || !convert(requestor, pairs[i], pairs[i + 1])) {
            pairs[i + 1] = XCB_ATOM_NONE; // by ICCCM 2.6.2 the sign that this one failed
        }
    }
    put(requestor, property, m_atomPair, pairs);
    return true;
}

void ClipboardKeeper::put(xcb_window_t requestor, xcb_atom_t property, xcb_atom_t type,
                          const std::vector<std::uint32_t> &words)
{
    xcb_change_property(m_xcb, XCB_PROP_MODE_REPLACE, requestor, property, type, 32,
                        static_cast<std::uint32_t>(words.size()), words.data());
}

void ClipboardKeeper::sendNext(xcb_window_t requestor, xcb_atom_t property)
{
    const auto transfer = std::find_if(m_transfers.begin(), m_transfers.end(), [&](const Transfer &other) {
        return other.requestor == requestor && other.property == property;
    });
    if (transfer == m_transfers.end()) {
        return;
    }
    const std::size_t size = std::min(m_chunk, transfer->bytes->size() - transfer->sent);
    xcb_change_property(m_xcb, XCB_PROP_MODE_REPLACE, requestor, property, transfer->target, 8,
                        static_cast<std::uint32_t>(size), transfer->bytes->data() + transfer->sent);
    transfer->sent += size;
    if (size > 0) {
        return; // the piece of no length that ends it follows when this one was taken
    }
    m_transfers.erase(transfer);
    const bool isBusy = std::any_of(m_transfers.begin(), m_transfers.end(),
                                    [&](const Transfer &other) { return other.requestor == requestor; });
    if (!isBusy) {
        const std::uint32_t none = XCB_EVENT_MASK_NO_EVENT;
        xcb_change_window_attributes(m_xcb, requestor, XCB_CW_EVENT_MASK, &none);
    }
}

void ClipboardKeeper::forget(xcb_window_t requestor)
{
    m_transfers.remove_if([requestor](const Transfer &transfer) { return transfer.requestor == requestor; });
}

} // namespace ostrelle
