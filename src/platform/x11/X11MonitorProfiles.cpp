#include "platform/x11/X11MonitorProfiles.h"

#include "platform/x11/WatchConnection.h"
#include "platform/x11/XcbReply.h"

#include <xcb/randr.h>

namespace ostrelle {

namespace {

constexpr std::uint32_t kMostProfileWords = 1024 * 1024; // of four bytes

QByteArray bytesOf(const std::uint8_t *data, int length)
{
    return {reinterpret_cast<const char *>(data), length};
}

QByteArray rootProperty(WatchConnection &connection, xcb_atom_t property)
{
    const auto cookie =
        xcb_get_property(connection.xcb(), 0, connection.root(), property, XCB_ATOM_ANY, 0, kMostProfileWords);
    const XcbReply<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection.xcb(), cookie, nullptr));
    const auto bytes = propertyBytes(reply.get());
    return {bytes.data(), static_cast<qsizetype>(bytes.size())};
}

QByteArray outputProperty(WatchConnection &connection, xcb_randr_output_t output)
{
    const auto cookie = xcb_randr_get_output_property(connection.xcb(), output, connection.atom("_ICC_PROFILE"),
                                                      XCB_ATOM_ANY, 0, kMostProfileWords, 0, 0);
    const XcbReply<xcb_randr_get_output_property_reply_t> reply(
        xcb_randr_get_output_property_reply(connection.xcb(), cookie, nullptr));
    if (!reply || reply->format != 8) {
        return {};
    }
    return bytesOf(xcb_randr_get_output_property_data(reply.get()),
                   xcb_randr_get_output_property_data_length(reply.get()));
}

QString outputName(WatchConnection &connection, xcb_randr_output_t output)
{
    const auto cookie = xcb_randr_get_output_info(connection.xcb(), output, XCB_CURRENT_TIME);
    const XcbReply<xcb_randr_get_output_info_reply_t> reply(
        xcb_randr_get_output_info_reply(connection.xcb(), cookie, nullptr));
    return reply ? QString::fromUtf8(bytesOf(xcb_randr_get_output_info_name(reply.get()),
                                             xcb_randr_get_output_info_name_length(reply.get())))
                 : QString();
}

/// The root window's property for the monitor of that number.
QByteArray numberedProfile(WatchConnection &connection, int number)
{
    const QByteArray name =
        number == 0 ? QByteArray("_ICC_PROFILE") : QByteArray("_ICC_PROFILE_") + QByteArray::number(number);
    return rootProperty(connection, connection.atom(name.constData()));
}

} // namespace

std::vector<X11MonitorProfile> readMonitorProfiles(WatchConnection &connection)
{
    std::vector<X11MonitorProfile> profiles;
    const auto cookie = xcb_randr_get_monitors(connection.xcb(), connection.root(), 1);
    const XcbReply<xcb_randr_get_monitors_reply_t> monitors(
        xcb_randr_get_monitors_reply(connection.xcb(), cookie, nullptr));
    if (monitors) {
        auto monitor = xcb_randr_get_monitors_monitors_iterator(monitors.get());
        for (; monitor.rem; xcb_randr_monitor_info_next(&monitor)) {
            const xcb_randr_monitor_info_t &info = *monitor.data;
            X11MonitorProfile profile{QRect(info.x, info.y, info.width, info.height), {}, {}};
            if (xcb_randr_monitor_info_outputs_length(&info) > 0) {
                const xcb_randr_output_t output = *xcb_randr_monitor_info_outputs(&info);
                profile.output = outputName(connection, output);
                profile.icc = outputProperty(connection, output);
            }
            if (profile.icc.isEmpty()) {
                profile.icc = numberedProfile(connection, static_cast<int>(profiles.size()));
            }
            profiles.push_back(profile);
        }
    }
    connection.flush();
    return profiles;
}

} // namespace ostrelle
