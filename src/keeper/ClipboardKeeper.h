#pragma once

#include "keeper/KeptContents.h"

#include <cstddef>
#include <cstdint>
#include <list>
#include <map>
#include <memory>
#include <string>

#include <xcb/xcb.h>

namespace ostrelle {

/// Owns the CLIPBOARD selection and serves the kept contents (ICCCM 2), large ones in increments and to several
/// requestors at once, until something else is copied or the server goes.
class ClipboardKeeper
{
public:
    explicit ClipboardKeeper(KeptContents kept);
    ~ClipboardKeeper();
    ClipboardKeeper(const ClipboardKeeper &) = delete;
    ClipboardKeeper &operator=(const ClipboardKeeper &) = delete;

    /// Whether the selection is taken; not when there is no server or another program has copied something by now.
    bool take();
    /// Serves; returns when there is nothing more to do.
    void run();

private:
    /// One content on its way in increments.
    struct Transfer
    {
        xcb_window_t requestor;
        xcb_atom_t property;
        xcb_atom_t target;
        const std::vector<std::uint8_t> *bytes;
        std::size_t sent;
    };

    xcb_atom_t atom(const char *name);
    xcb_timestamp_t serverTime();
    xcb_window_t owner();
    void handle(const xcb_generic_event_t &event);
    void handleRequest(const xcb_selection_request_event_t &request);
    bool convert(xcb_window_t requestor, xcb_atom_t target, xcb_atom_t property);
    bool convertMultiple(xcb_window_t requestor, xcb_atom_t property);
    void put(xcb_window_t requestor, xcb_atom_t property, xcb_atom_t type, const std::vector<std::uint32_t> &words);
    void sendNext(xcb_window_t requestor, xcb_atom_t property);
    void forget(xcb_window_t requestor);

    KeptContents m_kept;
    xcb_connection_t *m_xcb;
    xcb_window_t m_root = XCB_WINDOW_NONE;
    xcb_window_t m_window = XCB_WINDOW_NONE;
    xcb_timestamp_t m_time = XCB_CURRENT_TIME;
    std::size_t m_chunk = 0; ///< bytes sent in one piece at most
    bool m_isOwner = false;
    xcb_atom_t m_clipboard = XCB_ATOM_NONE;
    xcb_atom_t m_targets = XCB_ATOM_NONE;
    xcb_atom_t m_timestamp = XCB_ATOM_NONE;
    xcb_atom_t m_multiple = XCB_ATOM_NONE;
    xcb_atom_t m_atomPair = XCB_ATOM_NONE;
    xcb_atom_t m_incr = XCB_ATOM_NONE;
    std::map<xcb_atom_t, const std::vector<std::uint8_t> *> m_contents;
    std::list<Transfer> m_transfers;
};

} // namespace ostrelle
