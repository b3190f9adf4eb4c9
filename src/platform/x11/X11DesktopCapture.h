#pragma once

#include "platform/ColourPicker.h"
#include "platform/x11/PixelLayout.h"
#include "platform/x11/SharedSegment.h"

#include <QByteArray>
#include <QImage>
#include <QRect>

#include <memory>
#include <optional>

namespace ostrelle {

/// What all screens show at one moment, with all its bits. Positions are native pixels of the root window.
class X11DesktopCapture
{
public:
    /// Takes it, through shared memory where the server can; nothing where the screen cannot be read. Blocks for the
    /// server's answer, never for another program's.
    static std::optional<X11DesktopCapture> take(xcb_connection_t *connection, const xcb_screen_t &screen);

    const QRect &area() const { return m_area; }
    /// Of a pixel within area().
    PickedColour colour(const QPoint &position) const { return m_layout.colour(valueAt(position)); }
    /// A part with eight bits a component; black beyond area().
    QImage image(const QRect &part) const;

private:
    X11DesktopCapture(const PixelLayout &layout, const QSize &size);
    bool readShared(xcb_connection_t *connection, xcb_window_t root);
    bool readSent(xcb_connection_t *connection, xcb_window_t root);
    std::uint32_t valueAt(const QPoint &position) const;

    PixelLayout m_layout;
    QRect m_area;
    qsizetype m_rowBytes;
    std::unique_ptr<SharedSegment> m_shared; ///< of a local server
    QByteArray m_sent;                       ///< of a remote one
    const uchar *m_bytes = nullptr;
};

} // namespace ostrelle
