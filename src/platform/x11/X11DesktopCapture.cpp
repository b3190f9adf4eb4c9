#include "platform/x11/X11DesktopCapture.h"

#include "platform/x11/XcbReply.h"

#include <xcb/shm.h>

namespace ostrelle {

namespace {

constexpr std::uint32_t kEveryPlane = ~0U;

} // namespace

std::optional<X11DesktopCapture> X11DesktopCapture::take(xcb_connection_t *connection, const xcb_screen_t &screen)
{
    const auto layout = PixelLayout::ofRoot(*xcb_get_setup(connection), screen);
    // The size now, not when the connection was made: screens may have been added.
    const XcbReply<xcb_get_geometry_reply_t> geometry(
        xcb_get_geometry_reply(connection, xcb_get_geometry(connection, screen.root), nullptr));
    if (!layout || !geometry) {
        return std::nullopt;
    }
    X11DesktopCapture capture(*layout, QSize(geometry->width, geometry->height));
    if (!capture.readShared(connection, screen.root) && !capture.readSent(connection, screen.root)) {
        return std::nullopt;
    }
    return capture;
}

X11DesktopCapture::X11DesktopCapture(const PixelLayout &layout, const QSize &size)
    : m_layout(layout)
    , m_area(QPoint(0, 0), size)
    , m_rowBytes((qsizetype{size.width()} * layout.bytesPerPixel() + 3) / 4 * 4)
{
}

bool X11DesktopCapture::readShared(xcb_connection_t *connection, xcb_window_t root)
{
    auto segment = std::make_unique<SharedSegment>(connection, static_cast<std::size_t>(m_rowBytes * m_area.height()));
    if (!segment->isAttached()) {
        return false;
    }
    const auto cookie = xcb_shm_get_image(connection, root, 0, 0, static_cast<std::uint16_t>(m_area.width()),
                                          static_cast<std::uint16_t>(m_area.height()), kEveryPlane,
                                          XCB_IMAGE_FORMAT_Z_PIXMAP, segment->id(), 0);
    xcb_generic_error_t *error = nullptr;
    const XcbReply<xcb_shm_get_image_reply_t> reply(xcb_shm_get_image_reply(connection, cookie, &error));
    const XcbReply<xcb_generic_error_t> ownedError(error);
    if (!reply) {
        return false;
    }
    m_bytes = segment->bytes();
    m_shared = std::move(segment);
    return true;
}

bool X11DesktopCapture::readSent(xcb_connection_t *connection, xcb_window_t root)
{
    const auto cookie =
        xcb_get_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, root, 0, 0, static_cast<std::uint16_t>(m_area.width()),
                      static_cast<std::uint16_t>(m_area.height()), kEveryPlane);
    xcb_generic_error_t *error = nullptr;
    const XcbReply<xcb_get_image_reply_t> reply(xcb_get_image_reply(connection, cookie, &error));
    const XcbReply<xcb_generic_error_t> ownedError(error);
    if (!reply || xcb_get_image_data_length(reply.get()) < m_rowBytes * m_area.height()) {
        return false;
    }
    m_sent = QByteArray(reinterpret_cast<const char *>(xcb_get_image_data(reply.get())),
                        xcb_get_image_data_length(reply.get()));
    m_bytes = reinterpret_cast<const uchar *>(m_sent.constData());
    return true;
}

std::uint32_t X11DesktopCapture::valueAt(const QPoint &position) const
{
    return m_layout.valueAt(m_bytes + position.y() * m_rowBytes + qsizetype{position.x()} * m_layout.bytesPerPixel());
}

QImage X11DesktopCapture::image(const QRect &part) const
{
    QImage image(part.size(), QImage::Format_RGB32);
    image.fill(Qt::black);
    const QRect known = part & m_area;
    for (int y = known.top(); y <= known.bottom(); ++y) {
        auto *row = reinterpret_cast<QRgb *>(image.scanLine(y - part.top()));
        for (int x = known.left(); x <= known.right(); ++x) {
            row[x - part.left()] = m_layout.rgb(valueAt(QPoint(x, y)));
        }
    }
    return image;
}

} // namespace ostrelle
