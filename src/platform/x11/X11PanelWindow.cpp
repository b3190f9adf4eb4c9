#include "platform/x11/X11PanelWindow.h"

#include "platform/x11/ToolkitConnection.h"
#include "platform/x11/WatchConnection.h"
#include "platform/x11/X11WindowShape.h"
#include "platform/x11/XcbReply.h"

#include <QWidget>

#include <cstdint>

#include <xcb/shape.h>

namespace ostrelle {

X11PanelWindow::X11PanelWindow(WatchConnection &watch)
    : m_watch(watch)
{
}

void X11PanelWindow::adopt(const QWidget &panel)
{
    xcb_connection_t *connection = toolkitConnection();
    m_id = static_cast<xcb_window_t>(panel.internalWinId());
    // While the window grows the server keeps the old picture centred.
    const std::uint32_t gravity = XCB_GRAVITY_NORTH;
    xcb_change_window_attributes(connection, m_id, XCB_CW_BIT_GRAVITY, &gravity);
    // The type keeps compositors from drawing a shadow around the transparent rectangle.
    const xcb_atom_t dock = m_watch.atom("_NET_WM_WINDOW_TYPE_DOCK");
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, m_id, m_watch.atom("_NET_WM_WINDOW_TYPE"), XCB_ATOM_ATOM, 32,
                        1, &dock);
    update(panel);
}

void X11PanelWindow::update(const QWidget &panel)
{
    xcb_connection_t *connection = toolkitConnection();
    m_scale = panel.devicePixelRatioF();
    const auto cookie = xcb_get_geometry(connection, m_id);
    const XcbReply<xcb_get_geometry_reply_t> geometry(xcb_get_geometry_reply(connection, cookie, nullptr));
    if (geometry) {
        m_origin = QPoint(geometry->x, geometry->y); // never reparented, so relative to the root window
    }
    sendInteractiveRect();
    sendGlass();
}

void X11PanelWindow::announceSize() const
{
    // Chromium looks for what is under its drag in copies of all windows' shapes, and renews one when the server tells
    // of a change: never for a window without a shape, of which it would see no more than the size when the drag began.
    // What grows towards a drag has one for a moment.
    if (m_id && m_glass != PanelHost::Glass::None) {
        constexpr xcb_rectangle_t kEverything{0, 0, UINT16_MAX, UINT16_MAX};
        xcb_shape_rectangles(toolkitConnection(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING, XCB_CLIP_ORDERING_UNSORTED,
                             m_id, 0, 0, 1, &kEverything);
        sendShape();
        xcb_flush(toolkitConnection());
    }
}

void X11PanelWindow::setInteractiveRect(const QRectF &rect)
{
    if (m_interactiveRect != rect) {
        m_interactiveRect = rect;
        sendInteractiveRect();
    }
}

void X11PanelWindow::setOutline(const QPainterPath &outline)
{
    if (m_outline != outline) {
        m_outline = outline;
        sendGlass();
    }
}

void X11PanelWindow::setGlass(PanelHost::Glass glass)
{
    m_glass = glass;
    sendGlass();
}

QRegion X11PanelWindow::outlineRegion() const
{
    return nativeRegion(m_outline, m_scale);
}

void X11PanelWindow::sendInteractiveRect() const
{
    if (!m_id) {
        return;
    }
    const QRectF scaled(m_interactiveRect.topLeft() * m_scale, m_interactiveRect.size() * m_scale);
    // No rectangle at all lets every click pass to the window below.
    const auto rectangles = nativeRectangles(m_interactiveRect.isEmpty() ? QRegion() : QRegion(scaled.toAlignedRect()));
    xcb_shape_rectangles(toolkitConnection(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT, XCB_CLIP_ORDERING_UNSORTED, m_id, 0,
                         0, static_cast<std::uint32_t>(rectangles.size()), rectangles.data());
    xcb_flush(toolkitConnection());
}

void X11PanelWindow::sendBackground() const
{
    // With a compositor a new area starts transparent. Without one it keeps what the screen shows there until the first
    // paint: the outline seems to grow with the picture, where any colour would flash.
    constexpr std::uint32_t kNothing = 0;
    const bool isOpaque = m_glass == PanelHost::Glass::None;
    xcb_change_window_attributes(toolkitConnection(), m_id, isOpaque ? XCB_CW_BACK_PIXMAP : XCB_CW_BACK_PIXEL,
                                 &kNothing);
}

void X11PanelWindow::sendGlass() const
{
    if (m_id) {
        sendBackground();
        sendShape();
        sendBlurRegion();
        xcb_flush(toolkitConnection());
    }
}

void X11PanelWindow::sendShape() const
{
    xcb_connection_t *connection = toolkitConnection();
    if (m_glass != PanelHost::Glass::None) {
        xcb_shape_mask(connection, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING, m_id, 0, 0, XCB_PIXMAP_NONE);
        return;
    }
    // Transparent pixels are black without a compositor: the window itself takes the outline.
    const auto rectangles = nativeRectangles(outlineRegion());
    xcb_shape_rectangles(connection, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING, XCB_CLIP_ORDERING_YX_BANDED, m_id, 0, 0,
                         static_cast<std::uint32_t>(rectangles.size()), rectangles.data());
}

void X11PanelWindow::sendBlurRegion() const
{
    setBlurBehind(toolkitConnection(), m_id, m_watch.atom("_KDE_NET_WM_BLUR_BEHIND_REGION"),
                  m_glass == PanelHost::Glass::Compositor ? outlineRegion() : QRegion());
}

} // namespace ostrelle
