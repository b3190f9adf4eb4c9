#include "platform/x11/X11TopBars.h"

#include "platform/x11/XcbReply.h"

#include <QByteArray>

#include <algorithm>

namespace ostrelle {

namespace {

constexpr std::uint32_t kMostWindows = 4096;

} // namespace

X11TopBars::X11TopBars(WatchConnection &watch)
    : m_watch(watch)
{
}

void X11TopBars::read()
{
    m_workAreas.clear();
    m_struts.clear();
    readWorkAreas();
    if (m_workAreas.empty()) {
        readStruts();
    }
    m_watch.flush();
}

void X11TopBars::readWorkAreas()
{
    xcb_connection_t *connection = m_watch.xcb();
    const auto desktopCookie =
        xcb_get_property(connection, 0, m_watch.root(), m_watch.atom("_NET_CURRENT_DESKTOP"), XCB_ATOM_CARDINAL, 0, 1);
    const XcbReply<xcb_get_property_reply_t> desktop(xcb_get_property_reply(connection, desktopCookie, nullptr));
    const auto number = propertyWords(desktop.get());
    const QByteArray name = "_GTK_WORKAREAS_D" + QByteArray::number(number.empty() ? 0U : number.front());
    m_workAreasProperty = m_watch.atom(name.constData());

    const auto cookie =
        xcb_get_property(connection, 0, m_watch.root(), m_workAreasProperty, XCB_ATOM_CARDINAL, 0, 4 * 64);
    const XcbReply<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection, cookie, nullptr));
    const auto words = propertyWords(reply.get());
    for (std::size_t i = 0; i + 3 < words.size(); i += 4) {
        m_workAreas.emplace_back(words[i], words[i + 1], words[i + 2], words[i + 3]);
    }
}

void X11TopBars::readStruts()
{
    xcb_connection_t *connection = m_watch.xcb();
    const auto listCookie = xcb_get_property(connection, 0, m_watch.root(), m_watch.atom("_NET_CLIENT_LIST"),
                                             XCB_ATOM_WINDOW, 0, kMostWindows);
    const XcbReply<xcb_get_property_reply_t> list(xcb_get_property_reply(connection, listCookie, nullptr));
    const auto windows = propertyWords(list.get());

    const xcb_atom_t partialStrut = m_watch.atom("_NET_WM_STRUT_PARTIAL");
    const xcb_atom_t strut = m_watch.atom("_NET_WM_STRUT");
    std::vector<xcb_get_property_cookie_t> cookies;
    for (const xcb_window_t window : windows) {
        cookies.push_back(xcb_get_property(connection, 0, window, partialStrut, XCB_ATOM_CARDINAL, 0, 12));
        cookies.push_back(xcb_get_property(connection, 0, window, strut, XCB_ATOM_CARDINAL, 0, 4));
    }
    for (std::size_t i = 0; i + 1 < cookies.size(); i += 2) {
        const XcbReply<xcb_get_property_reply_t> partialReply(xcb_get_property_reply(connection, cookies[i], nullptr));
        const XcbReply<xcb_get_property_reply_t> fullReply(xcb_get_property_reply(connection, cookies[i + 1], nullptr));
        const auto partial = propertyWords(partialReply.get()); // left, right, top, bottom, then start and end of each
        const auto full = propertyWords(fullReply.get());
        if (partial.size() == 12 && partial[2] > 0) {
            m_struts.push_back({double(partial[2]), double(partial[8]), double(partial[9])});
        } else if (partial.size() != 12 && full.size() == 4 && full[2] > 0) {
            m_struts.push_back({double(full[2]), 0, double(m_watch.screen().width_in_pixels)});
        }
    }
}

double X11TopBars::heightOn(const QRectF &monitor) const
{
    double height = 0;
    for (const QRectF &area : m_workAreas) {
        if (monitor.contains(area.center())) {
            height = std::max(height, area.y() - monitor.y());
        }
    }
    for (const Strut &strut : m_struts) {
        // A strut is measured from the edge of the whole desktop; one that reaches beyond this monitor is another's.
        const double reserved = strut.top - monitor.y();
        if (strut.toX >= monitor.x() && strut.fromX < monitor.x() + monitor.width() && reserved < monitor.height()) {
            height = std::max(height, reserved);
        }
    }
    return height;
}

bool X11TopBars::dependsOn(xcb_atom_t rootProperty) const
{
    for (const char *name : {"_NET_WORKAREA", "_NET_CLIENT_LIST", "_NET_CURRENT_DESKTOP"}) {
        if (rootProperty == m_watch.atom(name)) {
            return true;
        }
    }
    return rootProperty == m_workAreasProperty;
}

} // namespace ostrelle
