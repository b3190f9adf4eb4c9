#pragma once

#include "platform/x11/SharedSegment.h"
#include "platform/x11/WatchConnection.h"

#include <QImage>
#include <QPoint>
#include <QRegion>

#include <functional>
#include <memory>

namespace ostrelle {

/// A picture above everything else on the desktop, which no click reaches. Positions and sizes are native pixels.
///
/// The picture is drawn into canvas(), which the server reads by itself: nothing may be drawn while isBeingRead().
class X11OverlayWindow
{
    struct Visual;

public:
    struct Handlers
    {
        std::function<void()> read; ///< the server has read the canvas
        /// A part of the picture is lost. Servers that compose pictures with alpha by themselves keep what was covered.
        std::function<void()> exposed;
    };

    /// Null when the server has no pixels with alpha.
    static std::unique_ptr<X11OverlayWindow> create(WatchConnection &connection, Handlers handlers);
    explicit X11OverlayWindow(WatchConnection &connection, const Visual &visual,
                              Handlers handlers); ///< only create() knows a visual
    ~X11OverlayWindow();
    X11OverlayWindow(const X11OverlayWindow &) = delete;
    X11OverlayWindow &operator=(const X11OverlayWindow &) = delete;

    /// A new canvas, its content undefined, when the size is another one.
    void resize(const QSize &size);
    /// ARGB32, premultiplied.
    QImage &canvas() { return m_canvas; }
    bool isBeingRead() const { return m_isBeingRead; }

    /// The pixels that there are: without a compositor none can be seen through.
    void setShape(const QRegion &shape);
    /// All of them are there again.
    void clearShape();
    /// Shows the canvas with its top left corner there.
    void present(const QPoint &position);
    /// Leaves the picture as it is.
    void move(const QPoint &position);

private:
    void handle(const xcb_generic_event_t &event);

    WatchConnection &m_connection;
    Handlers m_handlers;
    xcb_window_t m_id;
    xcb_colormap_t m_colormap;
    xcb_gcontext_t m_context;
    int m_completionEvent;
    bool m_isMapped = false;
    bool m_isBeingRead = false;
    std::unique_ptr<SharedSegment> m_segment;
    QImage m_canvas; ///< in the segment where there is one
    WatchConnection::Subscription m_subscription;
};

} // namespace ostrelle
