#include "peers/PeerConnection.h"

#include <poll.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <map>
#include <optional>
#include <set>
#include <string_view>
#include <utility>

// drag-source [--type NAME VALUE] [--count N] [--list FILE] [--late MS] [--version N] [--decoys] [--mode MODE]
//
// A window at (40, 400) out of which a pressed button drags, by XDND. Prints "ready", "began", "entered", then
// "status 0" or "status 1" for each answer of a target, and "left" or "dropped" and "finished 0" or "finished 1".
// --count offers so many files as text/uri-list, --list the bytes of a file; --decoys offers other types before those,
// in a list. A VALUE of text/x-moz-url is ASCII, and offered in that type's encoding.

namespace {

using namespace ostrelle;

const std::set<std::string_view> kModes{
    "hang",    // never gives its list
    "strict",  // refuses once, and each request with another time than its latest message's
    "refuse",  // refuses each request
    "die",     // ends at its second position, without a word
    "mute",    // says nothing when the button is let go
    "garbage", // gives anything
    "long",    // gives more than 4 MiB, in lines of 1024 bytes
};

constexpr std::size_t kWholeAtMost = 4 * 1024 * 1024;
constexpr std::size_t kChunk = 128 * 1024;
constexpr int kDistance = 8;

struct Options
{
    std::map<std::string, std::string> contents;
    std::string mode;
    int lateMs = 0;
    std::uint32_t version = 5;
    bool hasDecoys = false;
};

class DragSource
{
public:
    explicit DragSource(Options options);
    void run();

private:
    using Clock = std::chrono::system_clock;

    void handle(const xcb_generic_event_t &event);
    void moveTo(const xcb_motion_notify_event_t &motion);
    xcb_window_t targetUnderPointer();
    void enter(xcb_window_t target);
    void sendPosition();
    void handleStatus(const xcb_client_message_event_t &status);
    void end();
    void serve(const xcb_selection_request_event_t &request);
    void sendNext(xcb_window_t requestor);
    void send(const char *type, std::initializer_list<std::uint32_t> words);

    PeerConnection m_peer;
    Options m_options;
    std::vector<std::uint32_t> m_types;
    xcb_window_t m_target = XCB_WINDOW_NONE;
    int m_pressX = 0;
    bool m_isPressed = false;
    bool m_isDragging = false;
    bool m_isWaiting = false; ///< for the target's answer
    bool m_isReleased = false;
    bool m_isAccepted = false;
    bool m_hasRefused = false;
    int m_positions = 0;
    std::uint32_t m_time = 0; ///< of the latest message
    std::optional<xcb_motion_notify_event_t> m_latest;
    std::optional<std::pair<Clock::time_point, xcb_selection_request_event_t>> m_owed;
    std::map<xcb_window_t, std::pair<xcb_selection_request_event_t, std::size_t>> m_transfers;
};

DragSource::DragSource(Options options)
    : m_options(std::move(options))
{
    if (m_options.hasDecoys) {
        for (const char *name : {"text/plain", "UTF8_STRING", "text/html", "x-peer/decoy"}) {
            m_types.push_back(m_peer.atom(name));
        }
    }
    for (const auto &[name, value] : m_options.contents) {
        m_types.push_back(m_peer.atom(name));
    }
    m_peer.put(m_peer.window(), m_peer.atom("XdndTypeList"), XCB_ATOM_ATOM, m_types);
    const std::uint32_t values[] = {1, XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE |
                                           XCB_EVENT_MASK_BUTTON_MOTION | XCB_EVENT_MASK_EXPOSURE};
    xcb_change_window_attributes(m_peer.xcb(), m_peer.window(), XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
    xcb_map_window(m_peer.xcb(), m_peer.window());
}

void DragSource::run()
{
    for (;;) {
        xcb_flush(m_peer.xcb());
        while (const PeerReply<xcb_generic_event_t> event{xcb_poll_for_event(m_peer.xcb())}) {
            handle(*event);
        }
        if (xcb_connection_has_error(m_peer.xcb())) {
            return;
        }
        if (m_owed && Clock::now() >= m_owed->first) {
            serve(std::exchange(m_owed, std::nullopt)->second);
            continue;
        }
        xcb_flush(m_peer.xcb());
        pollfd watched{xcb_get_file_descriptor(m_peer.xcb()), POLLIN, 0};
        poll(&watched, 1, m_owed ? 10 : -1);
    }
}

void DragSource::handle(const xcb_generic_event_t &event)
{
    switch (event.response_type & 0x7f) {
    case XCB_EXPOSE:
        tell("ready");
        break;
    case XCB_BUTTON_PRESS:
        m_isPressed = true;
        m_pressX = reinterpret_cast<const xcb_button_press_event_t &>(event).root_x;
        break;
    case XCB_BUTTON_RELEASE:
        m_isPressed = false;
        m_isReleased = m_isDragging;
        if (m_isDragging && !m_isWaiting) {
            end();
        }
        break;
    case XCB_MOTION_NOTIFY:
        moveTo(reinterpret_cast<const xcb_motion_notify_event_t &>(event));
        break;
    case XCB_CLIENT_MESSAGE:
        handleStatus(reinterpret_cast<const xcb_client_message_event_t &>(event));
        break;
    case XCB_SELECTION_REQUEST: {
        const auto &request = reinterpret_cast<const xcb_selection_request_event_t &>(event);
        if (m_options.lateMs > 0) {
            m_owed.emplace(Clock::now() + std::chrono::milliseconds(m_options.lateMs), request);
        } else {
            serve(request);
        }
        break;
    }
    case XCB_PROPERTY_NOTIFY: {
        const auto &notify = reinterpret_cast<const xcb_property_notify_event_t &>(event);
        if (notify.state == XCB_PROPERTY_DELETE) {
            sendNext(notify.window);
        }
        break;
    }
    default:
        break;
    }
}

void DragSource::moveTo(const xcb_motion_notify_event_t &motion)
{
    if (!m_isPressed) {
        return;
    }
    if (!m_isDragging && std::abs(motion.root_x - m_pressX) >= kDistance) {
        m_isDragging = true;
        xcb_set_selection_owner(m_peer.xcb(), m_peer.window(), m_peer.atom("XdndSelection"), motion.time);
        tell("began");
    }
    if (m_isDragging) {
        m_latest = motion;
        if (!m_isWaiting) {
            sendPosition();
        }
    }
}

xcb_window_t DragSource::targetUnderPointer()
{
    for (xcb_window_t window = m_peer.root(); window != XCB_WINDOW_NONE;) {
        const PeerReply<xcb_query_pointer_reply_t> pointer(
            xcb_query_pointer_reply(m_peer.xcb(), xcb_query_pointer(m_peer.xcb(), window), nullptr));
        window = pointer ? pointer->child : xcb_window_t{XCB_WINDOW_NONE};
        const auto cookie = xcb_get_property(m_peer.xcb(), 0, window, m_peer.atom("XdndAware"), XCB_ATOM_ANY, 0, 1);
        const PeerReply<xcb_get_property_reply_t> aware(xcb_get_property_reply(m_peer.xcb(), cookie, nullptr));
        if (window != XCB_WINDOW_NONE && aware && aware->type != XCB_ATOM_NONE) {
            return window;
        }
    }
    return XCB_WINDOW_NONE;
}

void DragSource::enter(xcb_window_t target)
{
    if (m_target != XCB_WINDOW_NONE) {
        send("XdndLeave", {});
    }
    m_target = target;
    m_isAccepted = false;
    if (target != XCB_WINDOW_NONE) {
        const auto type = [this](std::size_t i) { return i < m_types.size() ? m_types[i] : 0U; };
        tell("entered");
        send("XdndEnter", {(m_options.version << 24) | (m_types.size() > 3 ? 1U : 0U), type(0), type(1), type(2)});
    }
}

void DragSource::sendPosition()
{
    const xcb_motion_notify_event_t motion = *std::exchange(m_latest, std::nullopt);
    if (const xcb_window_t target = targetUnderPointer(); target != m_target) {
        enter(target);
    }
    if (m_target == XCB_WINDOW_NONE) {
        return;
    }
    if (m_options.mode == "die" && ++m_positions == 2) {
        std::exit(EXIT_SUCCESS);
    }
    m_time = motion.time;
    const auto x = static_cast<std::uint32_t>(motion.root_x) << 16;
    send("XdndPosition", {0, x | static_cast<std::uint32_t>(motion.root_y), m_time, m_peer.atom("XdndActionCopy")});
    m_isWaiting = true;
}

void DragSource::handleStatus(const xcb_client_message_event_t &status)
{
    const bool isYes = (status.data.data32[1] & 1) != 0;
    if (status.type == m_peer.atom("XdndFinished")) {
        tell(isYes ? "finished 1" : "finished 0");
        m_isDragging = false;
        m_target = XCB_WINDOW_NONE;
        return;
    }
    if (status.type != m_peer.atom("XdndStatus") || status.data.data32[0] != m_target) {
        return;
    }
    tell(isYes ? "status 1" : "status 0");
    m_isAccepted = isYes;
    m_isWaiting = false;
    if (m_latest) {
        sendPosition();
    } else if (m_isReleased) {
        end();
    }
}

void DragSource::end()
{
    m_isReleased = false;
    if (m_options.mode == "mute") {
        return;
    }
    if (m_target != XCB_WINDOW_NONE && m_isAccepted) {
        send("XdndDrop", {0, m_time});
        tell("dropped");
        return;
    }
    enter(XCB_WINDOW_NONE);
    m_isDragging = false;
    tell("left");
}

void DragSource::serve(const xcb_selection_request_event_t &request)
{
    if (m_options.mode == "hang") {
        return;
    }
    const auto content = m_options.contents.find(m_peer.name(request.target));
    const bool isFirst = !std::exchange(m_hasRefused, true);
    const bool isStrict = m_options.mode == "strict" && (isFirst || request.time != m_time);
    if (content == m_options.contents.end() || isStrict || m_options.mode == "refuse") {
        m_peer.notify(request, XCB_ATOM_NONE);
        return;
    }
    if (content->second.size() > kWholeAtMost) {
        m_peer.watch(request.requestor);
        m_transfers[request.requestor] = {request, 0};
        m_peer.put(request.requestor, request.property, m_peer.atom("INCR"), std::vector<std::uint32_t>{0});
    } else {
        m_peer.put(request.requestor, request.property, request.target, content->second);
    }
    m_peer.notify(request, request.property);
}

void DragSource::sendNext(xcb_window_t requestor)
{
    const auto found = m_transfers.find(requestor);
    if (found == m_transfers.end()) {
        return;
    }
    auto &[request, sent] = found->second;
    const std::string piece = m_options.contents[m_peer.name(request.target)].substr(sent, kChunk);
    m_peer.put(requestor, request.property, request.target, piece);
    sent += piece.size();
    if (piece.empty()) {
        m_transfers.erase(found);
    }
}

void DragSource::send(const char *type, std::initializer_list<std::uint32_t> words)
{
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = m_target;
    message.type = m_peer.atom(type);
    message.data.data32[0] = m_peer.window();
    std::copy(words.begin(), words.end(), &message.data.data32[1]);
    xcb_send_event(m_peer.xcb(), 0, m_target, 0, reinterpret_cast<const char *>(&message));
}

std::string manyFiles(int count)
{
    std::string list;
    for (int i = 0; i < count; ++i) {
        list += "file:///tmp/file-" + std::to_string(i) + "\r\n";
    }
    return list;
}

std::string longNames()
{
    std::string list;
    for (int i = 0; i < 5000; ++i) {
        list += "file:///tmp/" + std::string(1010, 'n') + "\r\n";
    }
    return list;
}

std::string garbage()
{
    std::string bytes(300'000, '\0');
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        bytes[i] = static_cast<char>((i * 2654435761U) >> 13);
    }
    return bytes;
}

std::string utf16(const std::string &ascii)
{
    const std::u16string wide(ascii.begin(), ascii.end());
    return {reinterpret_cast<const char *>(wide.data()), wide.size() * sizeof(char16_t)};
}

} // namespace

int main(int argc, char **argv)
{
    Options options;
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    const auto at = [&](std::size_t i) { return i < arguments.size() ? arguments[i] : std::string(); };
    for (std::size_t i = 0; i < arguments.size(); i += 2) {
        const std::string &option = arguments[i];
        if (option == "--type") {
            options.contents[at(i + 1)] = at(i + 1) == "text/x-moz-url" ? utf16(at(i + 2)) : at(i + 2);
            ++i;
        } else if (option == "--count") {
            options.contents["text/uri-list"] = manyFiles(std::stoi(at(i + 1)));
        } else if (option == "--list") {
            std::ifstream file(at(i + 1), std::ios::binary);
            options.contents["text/uri-list"].assign(std::istreambuf_iterator<char>(file), {});
        } else if (option == "--late") {
            options.lateMs = std::stoi(at(i + 1));
        } else if (option == "--version") {
            options.version = static_cast<std::uint32_t>(std::stoi(at(i + 1)));
        } else if (option == "--decoys") {
            options.hasDecoys = true;
            --i;
        } else if (option == "--mode" && kModes.count(at(i + 1)) != 0) {
            options.mode = at(i + 1);
        } else {
            std::fputs("drag-source: no such option or mode\n", stderr);
            return 2;
        }
    }
    if (options.mode == "garbage") {
        options.contents["text/uri-list"] = garbage();
    }
    if (options.mode == "long") {
        options.contents["text/uri-list"] = longNames();
    }
    DragSource(std::move(options)).run();
    return EXIT_SUCCESS;
}
