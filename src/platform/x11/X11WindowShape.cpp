#include "platform/x11/X11WindowShape.h"

#include <QPainterPath>
#include <QTransform>

#include <cstdint>

namespace ostrelle {

QRegion nativeRegion(const QPainterPath &outline, double scale)
{
    return QRegion(outline.toFillPolygon(QTransform::fromScale(scale, scale)).toPolygon());
}

std::vector<xcb_rectangle_t> nativeRectangles(const QRegion &region)
{
    std::vector<xcb_rectangle_t> rectangles;
    rectangles.reserve(static_cast<std::size_t>(region.rectCount()));
    for (const QRect &rect : region) {
        rectangles.push_back({static_cast<std::int16_t>(rect.x()), static_cast<std::int16_t>(rect.y()),
                              static_cast<std::uint16_t>(rect.width()), static_cast<std::uint16_t>(rect.height())});
    }
    return rectangles;
}

void setBlurBehind(xcb_connection_t *connection, xcb_window_t window, xcb_atom_t property, const QRegion &region)
{
    if (region.isEmpty()) {
        xcb_delete_property(connection, window, property); // an empty list would mean the whole window
        return;
    }
    std::vector<std::uint32_t> words;
    words.reserve(static_cast<std::size_t>(region.rectCount()) * 4);
    for (const QRect &rect : region) {
        for (const int value : {rect.x(), rect.y(), rect.width(), rect.height()}) {
            words.push_back(static_cast<std::uint32_t>(value));
        }
    }
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, property, XCB_ATOM_CARDINAL, 32,
                        static_cast<std::uint32_t>(words.size()), words.data());
}

} // namespace ostrelle
