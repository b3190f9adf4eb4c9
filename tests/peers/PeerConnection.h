#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include <xcb/xcb.h>

namespace ostrelle {

struct PeerFreed
{
    void operator()(void *memory) const { std::free(memory); }
};
template <typename T>
using PeerReply = std::unique_ptr<T, PeerFreed>;

/// What every peer needs of the server. A failure ends the process with a line on standard error.
class PeerConnection
{
public:
    PeerConnection();
    ~PeerConnection();
    PeerConnection(const PeerConnection &) = delete;
    PeerConnection &operator=(const PeerConnection &) = delete;

    xcb_connection_t *xcb() const { return m_xcb; }
    xcb_window_t root() const { return m_root; }
    xcb_window_t window() const { return m_window; }

    xcb_atom_t atom(const std::string &name);
    std::string name(xcb_atom_t atom);
    xcb_timestamp_t serverTime();
    void takeSelection(xcb_atom_t selection);
    xcb_window_t ownerOf(xcb_atom_t selection);
    /// Maps a window of that class and waits until it is the active one.
    void showWindow(const std::string &windowClass);
    /// Blocks; null when the server is gone.
    PeerReply<xcb_generic_event_t> nextEvent();

    void put(xcb_window_t window, xcb_atom_t property, xcb_atom_t type, const std::vector<std::uint32_t> &words);
    void put(xcb_window_t window, xcb_atom_t property, xcb_atom_t type, const std::string &bytes);
    PeerReply<xcb_get_property_reply_t> take(xcb_window_t window, xcb_atom_t property);
    void notify(const xcb_selection_request_event_t &request, xcb_atom_t property);
    /// Asks for property deletions in somebody's window.
    void watch(xcb_window_t window);

private:
    xcb_window_t windowIn(xcb_atom_t property); ///< of the root window
    void askForActivation(xcb_atom_t active);
    /// Returns after a while also without one.
    void waitForChange();

    xcb_connection_t *m_xcb;
    xcb_window_t m_root = XCB_WINDOW_NONE;
    xcb_window_t m_window = XCB_WINDOW_NONE;
};

/// Tells the starting program, one line at a time.
void tell(const std::string &line);

} // namespace ostrelle
