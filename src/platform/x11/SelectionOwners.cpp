#include "platform/x11/SelectionOwners.h"

#include "platform/x11/WatchConnection.h"

#include <xcb/xfixes.h>

namespace ostrelle {

int watchSelectionOwners(WatchConnection &watch, xcb_atom_t selection)
{
    const int firstEvent = watch.firstEvent(&xcb_xfixes_id);
    if (firstEvent == 0) {
        return 0;
    }
    xcb_discard_reply(watch.xcb(), xcb_xfixes_query_version(watch.xcb(), 5, 0).sequence);
    xcb_xfixes_select_selection_input(watch.xcb(), watch.root(), selection,
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    watch.flush();
    return firstEvent + XCB_XFIXES_SELECTION_NOTIFY;
}

} // namespace ostrelle
