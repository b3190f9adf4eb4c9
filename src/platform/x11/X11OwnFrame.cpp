#include "platform/x11/X11OwnFrame.h"

#include "platform/x11/ToolkitConnection.h"
#include "platform/x11/WatchConnection.h"
#include "platform/x11/X11WindowShape.h"

#include <QEvent>
#include <QWidget>

#include <array>
#include <cmath>
#include <cstdint>

#include <xcb/shape.h>

namespace ostrelle {

X11OwnFrame::X11OwnFrame(WatchConnection &watch, QWidget &window, const QPainterPath &outline)
    : m_watch(watch)
    , m_window(window)
    , m_outline(outline)
    , m_glass(watch)
{
    window.winId(); // there must be one to carry the shape from its first moment on the screen
    window.installEventFilter(this);
    connect(&m_glass, &X11Glass::changed, this, [this] {
        send();
        Q_EMIT backingChanged();
    });
    send();
}

OwnFrame::Backing X11OwnFrame::backing() const
{
    switch (m_glass.glass()) {
    case PanelHost::Glass::Compositor:
        return Backing::Blurred;
    case PanelHost::Glass::Snapshot:
        return Backing::Translucent;
    case PanelHost::Glass::None:
        break;
    }
    return Backing::Opaque;
}

bool X11OwnFrame::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::WinIdChange:
    case QEvent::ScreenChangeInternal: // with another scale
    case QEvent::Resize:
    case QEvent::Show:
    // Some window managers copy the shape only when it changes while they manage the window.
    case QEvent::WindowActivate:
        send();
        break;
    default:
        break;
    }
    return OwnFrame::eventFilter(watched, event);
}

void X11OwnFrame::send() const
{
    const auto id = static_cast<xcb_window_t>(m_window.internalWinId());
    if (!id) {
        return;
    }
    xcb_connection_t *connection = toolkitConnection();
    const double scale = m_window.devicePixelRatioF();
    const QRegion region = nativeRegion(m_outline, scale);
    const auto rectangles = nativeRectangles(region);
    const auto shape = [&](xcb_shape_kind_t kind) {
        xcb_shape_rectangles(connection, XCB_SHAPE_SO_SET, kind, XCB_CLIP_ORDERING_YX_BANDED, id, 0, 0,
                             static_cast<std::uint32_t>(rectangles.size()), rectangles.data());
    };
    shape(XCB_SHAPE_SK_INPUT);
    if (backing() == Backing::Opaque) {
        shape(XCB_SHAPE_SK_BOUNDING);
    } else {
        xcb_shape_mask(connection, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING, id, 0, 0, XCB_PIXMAP_NONE);
    }
    setBlurBehind(connection, id, m_watch.atom("_KDE_NET_WM_BLUR_BEHIND_REGION"),
                  backing() == Backing::Blurred ? region : QRegion());
    sendExtents(scale);
    xcb_flush(connection);
}

void X11OwnFrame::sendExtents(double scale) const
{
    const QRectF inside = m_outline.boundingRect();
    const std::array<double, 4> margins = {inside.x(), m_window.width() - inside.x() - inside.width(), inside.y(),
                                           m_window.height() - inside.y() - inside.height()};
    std::array<std::uint32_t, 4> extents{};
    for (std::size_t i = 0; i < extents.size(); ++i) {
        extents[i] = static_cast<std::uint32_t>(std::lround(std::max(margins[i], 0.0) * scale));
    }
    xcb_change_property(toolkitConnection(), XCB_PROP_MODE_REPLACE, static_cast<xcb_window_t>(m_window.internalWinId()),
                        m_watch.atom("_GTK_FRAME_EXTENTS"), XCB_ATOM_CARDINAL, 32, extents.size(), extents.data());
}

} // namespace ostrelle
