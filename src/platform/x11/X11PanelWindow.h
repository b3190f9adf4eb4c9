#pragma once

#include "platform/PanelHost.h"

#include <QPainterPath>
#include <QPoint>
#include <QRectF>
#include <QRegion>

#include <xcb/xcb.h>

class QWidget;

namespace ostrelle {

class WatchConnection;

/// What the panel's native window carries beyond what the toolkit gives it: type, resize behaviour, input region, shape
/// and the region to blur. Remembers all of it for a new native window. Coordinates in are the widget's logical pixels;
/// native ones are device pixels.
class X11PanelWindow
{
public:
    explicit X11PanelWindow(WatchConnection &watch);

    /// Takes over the widget's native window, not mapped yet or new.
    void adopt(const QWidget &panel);
    /// The window was moved or rescaled: everything measured in native pixels is sent again. One round trip.
    void update(const QWidget &panel);

    /// The window has another size: other programs are told.
    void announceSize() const;

    void setInteractiveRect(const QRectF &rect);
    void setOutline(const QPainterPath &outline);
    void setGlass(PanelHost::Glass glass);

    xcb_window_t id() const { return m_id; }
    /// Native position of the widget's top left corner on the root window.
    QPoint origin() const { return m_origin; }
    double scale() const { return m_scale; }
    /// The outline as native pixels of the window.
    QRegion outlineRegion() const;

private:
    void sendInteractiveRect() const;
    void sendGlass() const;
    void sendBackground() const;
    void sendShape() const;
    void sendBlurRegion() const;

    WatchConnection &m_watch;
    xcb_window_t m_id = XCB_WINDOW_NONE;
    QPoint m_origin;
    double m_scale = 1;
    QRectF m_interactiveRect;
    QPainterPath m_outline;
    PanelHost::Glass m_glass = PanelHost::Glass::Snapshot;
};

} // namespace ostrelle
