#include "platform/x11/Xwayland.h"

#include "platform/x11/XcbReply.h"

#include <xcb/randr.h>

#include <string_view>

namespace ostrelle {

namespace {

constexpr std::string_view kExtension = "XWAYLAND"; // since 23.1
constexpr std::string_view kOutput = "XWAYLAND";    // and a number; before 23.1

} // namespace

bool isXwayland(xcb_connection_t *connection, xcb_window_t root)
{
    const auto extensionCookie =
        xcb_query_extension(connection, static_cast<std::uint16_t>(kExtension.size()), kExtension.data());
    const auto resourcesCookie = xcb_randr_get_screen_resources_current(connection, root);
    const XcbReply<xcb_query_extension_reply_t> extension(
        xcb_query_extension_reply(connection, extensionCookie, nullptr));
    const XcbReply<xcb_randr_get_screen_resources_current_reply_t> resources(
        xcb_randr_get_screen_resources_current_reply(connection, resourcesCookie, nullptr));
    if (extension && extension->present) {
        return true;
    }
    if (!resources || xcb_randr_get_screen_resources_current_outputs_length(resources.get()) == 0) {
        return false;
    }
    const xcb_randr_output_t first = xcb_randr_get_screen_resources_current_outputs(resources.get())[0];
    const XcbReply<xcb_randr_get_output_info_reply_t> output(xcb_randr_get_output_info_reply(
        connection, xcb_randr_get_output_info(connection, first, resources->config_timestamp), nullptr));
    if (!output) {
        return false;
    }
    const auto *name = reinterpret_cast<const char *>(xcb_randr_get_output_info_name(output.get()));
    const auto length = static_cast<std::size_t>(xcb_randr_get_output_info_name_length(output.get()));
    return std::string_view(name, length).starts_with(kOutput);
}

} // namespace ostrelle
