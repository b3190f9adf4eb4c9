#include "platform/x11/DisplayProbe.h"

#include <memory>

#include <xcb/xcb.h>

namespace ostrelle {

namespace {

struct Disconnected
{
    void operator()(xcb_connection_t *connection) const { xcb_disconnect(connection); }
};

} // namespace

bool isX11DisplayReachable()
{
    const std::unique_ptr<xcb_connection_t, Disconnected> probe(xcb_connect(nullptr, nullptr));
    return xcb_connection_has_error(probe.get()) == 0;
}

} // namespace ostrelle
