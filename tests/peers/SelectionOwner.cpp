#include "peers/PeerConnection.h"

#include <cstdio>
#include <iostream>
#include <map>
#include <string_view>
#include <utility>

// selection-owner MODE [--selection NAME] [--class CLASS] [--text TEXT] [--type NAME VALUE] [--bytes NAME SIZE]
// [--marker NAME] [--count N]
//
// Owns CLIPBOARD, or the other selection, in one of the ways below; with --class, from a window of that class that is
// active by then. Prints "ready", then "asked TARGET" for each request. --bytes gives so many bytes counting from 0 to
// 250, in increments when there are many; --marker is a type of no content.

namespace {

using namespace ostrelle;

enum class Mode { Serve, Wait, Refuse, HangTargets, HangIncr, DieIncr, Announce4G, Drip, Huge, GarbageTargets, Burst };

const std::map<std::string_view, Mode> kModes{
    {"serve", Mode::Serve},
    {"wait", Mode::Wait}, // for a line of input before it gives a content
    {"refuse", Mode::Refuse},
    {"hang-targets", Mode::HangTargets},
    {"hang-incr", Mode::HangIncr},     // stops in the middle
    {"die-incr", Mode::DieIncr},       // ends in the middle
    {"announce-4g", Mode::Announce4G}, // by its own words
    {"drip", Mode::Drip},              // a byte at a time, for ever
    {"huge", Mode::Huge},              // a GiB that was not announced
    {"garbage-targets", Mode::GarbageTargets},
    {"burst", Mode::Burst}, // copies in quick succession, then ends
};

constexpr std::size_t kChunk = 128 * 1024;
constexpr std::size_t kHuge = 1024UL * 1024 * 1024;

std::string patternOf(std::size_t size)
{
    std::string bytes(size, '\0');
    for (std::size_t i = 0; i < size; ++i) {
        bytes[i] = static_cast<char>(i % 251);
    }
    return bytes;
}

class SelectionOwner
{
public:
    SelectionOwner(Mode mode, const std::string &selection,
                   const std::vector<std::pair<std::string, std::string>> &contents);
    void show(const std::string &windowClass) { m_peer.showWindow(windowClass); }
    void burst(int count);
    void run();

private:
    struct Transfer
    {
        xcb_atom_t type;
        std::size_t sent;
    };

    void handle(const xcb_selection_request_event_t &request);
    void putTargets(const xcb_selection_request_event_t &request);
    void beginIncrements(const xcb_selection_request_event_t &request, std::uint32_t announced);
    void sendNext(xcb_window_t requestor, xcb_atom_t property);
    std::string nextPiece(const Transfer &transfer);

    PeerConnection m_peer;
    Mode m_mode;
    xcb_atom_t m_selection;
    xcb_atom_t m_targets = m_peer.atom("TARGETS");
    xcb_atom_t m_incr = m_peer.atom("INCR");
    std::map<xcb_atom_t, std::string> m_contents;
    std::map<std::pair<xcb_window_t, xcb_atom_t>, Transfer> m_transfers;
};

SelectionOwner::SelectionOwner(Mode mode, const std::string &selection,
                               const std::vector<std::pair<std::string, std::string>> &contents)
    : m_mode(mode)
    , m_selection(m_peer.atom(selection))
{
    for (const auto &[type, bytes] : contents) {
        m_contents[m_peer.atom(type)] = bytes;
    }
    if (m_contents.empty()) {
        m_contents[m_peer.atom("image/png")] = "no picture";
        m_contents[m_peer.atom("UTF8_STRING")] = "a text";
    }
}

void SelectionOwner::burst(int count)
{
    for (int i = 0; i < count; ++i) {
        m_peer.takeSelection(m_selection);
    }
}

void SelectionOwner::run()
{
    m_peer.takeSelection(m_selection);
    tell("ready");
    while (const auto event = m_peer.nextEvent()) {
        switch (event->response_type & 0x7f) {
        case XCB_SELECTION_REQUEST:
            handle(*reinterpret_cast<const xcb_selection_request_event_t *>(event.get()));
            break;
        case XCB_PROPERTY_NOTIFY: {
            const auto *notify = reinterpret_cast<const xcb_property_notify_event_t *>(event.get());
            if (notify->state == XCB_PROPERTY_DELETE) {
                sendNext(notify->window, notify->atom);
            }
            break;
        }
        case XCB_SELECTION_CLEAR:
            return;
        default:
            break;
        }
    }
}

void SelectionOwner::handle(const xcb_selection_request_event_t &request)
{
    tell("asked " + m_peer.name(request.target));
    const auto content = m_contents.find(request.target);
    if (m_mode == Mode::HangTargets) {
        return;
    }
    if (m_mode == Mode::Refuse || (request.target != m_targets && content == m_contents.end())) {
        m_peer.notify(request, XCB_ATOM_NONE);
        return;
    }
    if (m_mode == Mode::Wait && request.target != m_targets) {
        std::string line;
        std::getline(std::cin, line);
    }
    if (request.target == m_targets) {
        putTargets(request);
    } else if ((m_mode == Mode::Serve || m_mode == Mode::Wait) && content->second.size() <= kChunk) {
        m_peer.put(request.requestor, request.property, request.target, content->second);
    } else {
        beginIncrements(request, m_mode == Mode::Announce4G ? 0xffffffffU : 0);
    }
    m_peer.notify(request, request.property);
}

void SelectionOwner::putTargets(const xcb_selection_request_event_t &request)
{
    std::vector<std::uint32_t> types{m_targets};
    for (const auto &[type, bytes] : m_contents) {
        types.push_back(type);
    }
    if (m_mode == Mode::GarbageTargets) {
        types.assign(200'000, 0);
        for (std::size_t i = 0; i < types.size(); ++i) {
            types[i] = static_cast<std::uint32_t>(i * 2654435761U);
        }
    }
    m_peer.put(request.requestor, request.property, XCB_ATOM_ATOM, types);
}

void SelectionOwner::beginIncrements(const xcb_selection_request_event_t &request, std::uint32_t announced)
{
    m_peer.watch(request.requestor);
    m_transfers[{request.requestor, request.property}] = {request.target, 0};
    m_peer.put(request.requestor, request.property, m_incr, std::vector<std::uint32_t>{announced});
}

void SelectionOwner::sendNext(xcb_window_t requestor, xcb_atom_t property)
{
    const auto found = m_transfers.find({requestor, property});
    if (found == m_transfers.end()) {
        return;
    }
    Transfer &transfer = found->second;
    if (transfer.sent > 0 && m_mode == Mode::HangIncr) {
        return;
    }
    if (transfer.sent > 0 && m_mode == Mode::DieIncr) {
        std::exit(EXIT_SUCCESS);
    }
    const std::string piece = nextPiece(transfer);
    m_peer.put(requestor, property, transfer.type, piece);
    transfer.sent += piece.size();
    if (piece.empty()) {
        m_transfers.erase(found);
    }
}

std::string SelectionOwner::nextPiece(const Transfer &transfer)
{
    switch (m_mode) {
    case Mode::Serve:
    case Mode::Wait:
        return m_contents[transfer.type].substr(transfer.sent, kChunk);
    case Mode::Drip:
        return ".";
    case Mode::Huge:
        return transfer.sent < kHuge ? std::string(kChunk, '.') : std::string();
    default:
        return std::string(kChunk, '.');
    }
}

} // namespace

int main(int argc, char **argv)
{
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    const auto mode = arguments.empty() ? kModes.end() : kModes.find(arguments.front());
    if (mode == kModes.end()) {
        std::fputs("selection-owner: no such mode\n", stderr);
        return 2;
    }
    std::vector<std::pair<std::string, std::string>> contents;
    std::string windowClass;
    std::string selection = "CLIPBOARD";
    int count = 1000;
    const auto at = [&](std::size_t i) { return i < arguments.size() ? arguments[i] : std::string(); };
    for (std::size_t i = 1; i < arguments.size(); i += 2) {
        const std::string &option = arguments[i];
        if (option == "--class") {
            windowClass = at(i + 1);
        } else if (option == "--selection") {
            selection = at(i + 1);
        } else if (option == "--text") {
            contents.emplace_back("UTF8_STRING", at(i + 1));
        } else if (option == "--marker") {
            contents.emplace_back(at(i + 1), "");
        } else if (option == "--count") {
            count = std::stoi(at(i + 1));
        } else if (option == "--type") {
            contents.emplace_back(at(i + 1), at(i + 2));
            ++i;
        } else if (option == "--bytes") {
            contents.emplace_back(at(i + 1), patternOf(std::stoul(at(i + 2))));
            ++i;
        }
    }
    SelectionOwner owner(mode->second, selection, contents);
    if (!windowClass.empty()) {
        owner.show(windowClass);
    }
    if (mode->second == Mode::Burst) {
        owner.burst(count);
        return EXIT_SUCCESS;
    }
    owner.run();
    return EXIT_SUCCESS;
}
