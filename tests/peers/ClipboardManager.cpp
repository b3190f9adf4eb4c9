#include "peers/PeerConnection.h"

#include <cstdio>
#include <map>

#include <xcb/xfixes.h>

// clipboard-manager works|hangs
//
// Owns CLIPBOARD_MANAGER. One that works saves every target of CLIPBOARD when asked to, and serves them once their
// owner is gone. Prints "ready", then "asked", and "saved" for each time it was asked and has done it.

namespace {

using namespace ostrelle;

class ClipboardManager
{
public:
    explicit ClipboardManager(bool works)
        : m_works(works)
    {
        xcb_discard_reply(m_peer.xcb(), xcb_xfixes_query_version(m_peer.xcb(), 5, 0).sequence);
        xcb_xfixes_select_selection_input(m_peer.xcb(), m_peer.root(), m_clipboard, 6); // owner's window or client gone
        m_firstXfixesEvent = xcb_get_extension_data(m_peer.xcb(), &xcb_xfixes_id)->first_event;
    }

    void run()
    {
        m_peer.takeSelection(m_peer.atom("CLIPBOARD_MANAGER"));
        tell("ready");
        while (const auto event = m_peer.nextEvent()) {
            handle(*event);
        }
    }

private:
    void handle(const xcb_generic_event_t &event)
    {
        const int type = event.response_type & 0x7f;
        if (type == XCB_SELECTION_REQUEST) {
            const auto &request = reinterpret_cast<const xcb_selection_request_event_t &>(event);
            request.selection == m_clipboard ? serve(request) : save(request);
        } else if (type == XCB_SELECTION_NOTIFY) {
            receive(reinterpret_cast<const xcb_selection_notify_event_t &>(event));
        } else if (type == m_firstXfixesEvent && !m_saved.empty()) {
            m_peer.takeSelection(m_clipboard);
        }
    }

    void save(const xcb_selection_request_event_t &request)
    {
        tell("asked");
        if (m_works) {
            m_request = request;
            m_saved.clear();
            convert(m_targets);
        }
    }

    void convert(xcb_atom_t target)
    {
        ++m_pending;
        xcb_convert_selection(m_peer.xcb(), m_peer.window(), m_clipboard, target, target, XCB_CURRENT_TIME);
    }

    void receive(const xcb_selection_notify_event_t &notify)
    {
        --m_pending;
        const auto reply = m_peer.take(m_peer.window(), notify.target);
        if (notify.property != XCB_ATOM_NONE && reply) {
            const auto size = static_cast<std::size_t>(xcb_get_property_value_length(reply.get()));
            if (notify.target == m_targets) {
                const auto *types = static_cast<const xcb_atom_t *>(xcb_get_property_value(reply.get()));
                for (std::size_t i = 0; i < size / 4; ++i) {
                    if (const std::string name = m_peer.name(types[i]);
                        name.find('/') != std::string::npos || name == "UTF8_STRING") {
                        convert(types[i]);
                    }
                }
            } else {
                m_saved[notify.target] =
                    std::string(static_cast<const char *>(xcb_get_property_value(reply.get())), size);
            }
        }
        if (m_pending == 0) {
            m_peer.put(m_request.requestor, m_request.property, m_peer.atom("NULL"), std::vector<std::uint32_t>());
            m_peer.notify(m_request, m_request.property);
            tell("saved");
        }
    }

    void serve(const xcb_selection_request_event_t &request)
    {
        const auto saved = m_saved.find(request.target);
        if (saved == m_saved.end()) {
            m_peer.notify(request, XCB_ATOM_NONE);
            return;
        }
        m_peer.put(request.requestor, request.property, request.target, saved->second);
        m_peer.notify(request, request.property);
    }

    PeerConnection m_peer;
    bool m_works;
    int m_firstXfixesEvent = 0;
    xcb_atom_t m_clipboard = m_peer.atom("CLIPBOARD");
    xcb_atom_t m_targets = m_peer.atom("TARGETS");
    xcb_selection_request_event_t m_request{};
    int m_pending = 0;
    std::map<xcb_atom_t, std::string> m_saved;
};

} // namespace

int main(int argc, char **argv)
{
    const std::string mode = argc > 1 ? argv[1] : "";
    if (mode != "works" && mode != "hangs") {
        std::fputs("clipboard-manager: works or hangs?\n", stderr);
        return 2;
    }
    ClipboardManager(mode == "works").run();
    return EXIT_SUCCESS;
}
