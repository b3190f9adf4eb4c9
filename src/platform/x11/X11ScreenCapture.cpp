#include "platform/x11/X11ScreenCapture.h"

#include "platform/x11/SharedSegment.h"
#include "platform/x11/XcbReply.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <vector>

#include <xcb/composite.h>
#include <xcb/render.h>
#include <xcb/shm.h>

namespace ostrelle {

namespace {

constexpr std::uint32_t kAllPlanes = ~0U;
constexpr int kBytesPerPixel = 4;

/// Pixels are 32 bits in this machine's order, as QImage has them.
bool hasPlainPixels(const xcb_setup_t &setup, std::uint8_t depth)
{
    if (depth != 24 || setup.image_byte_order !=
                           (Q_BYTE_ORDER == Q_BIG_ENDIAN ? XCB_IMAGE_ORDER_MSB_FIRST : XCB_IMAGE_ORDER_LSB_FIRST)) {
        return false;
    }
    const xcb_format_t *formats = xcb_setup_pixmap_formats(&setup);
    return std::any_of(formats, formats + xcb_setup_pixmap_formats_length(&setup), [depth](const xcb_format_t &format) {
        return format.depth == depth && format.bits_per_pixel == 32 && format.scanline_pad == 32;
    });
}

QImage imageOf(const uchar *bytes, const QSize &size)
{
    return QImage(bytes, size.width(), size.height(), qsizetype(size.width()) * kBytesPerPixel, QImage::Format_RGB32)
        .copy();
}

QImage readPixels(xcb_connection_t *connection, xcb_drawable_t drawable, const QRect &area)
{
    const auto x = static_cast<std::int16_t>(area.x());
    const auto y = static_cast<std::int16_t>(area.y());
    const auto width = static_cast<std::uint16_t>(area.width());
    const auto height = static_cast<std::uint16_t>(area.height());
    const std::size_t byteSize = std::size_t{width} * height * kBytesPerPixel;

    const SharedSegment segment(connection, byteSize);
    if (segment.isAttached()) {
        const auto cookie = xcb_shm_get_image(connection, drawable, x, y, width, height, kAllPlanes,
                                              XCB_IMAGE_FORMAT_Z_PIXMAP, segment.id(), 0);
        xcb_generic_error_t *error = nullptr;
        const XcbReply<xcb_shm_get_image_reply_t> reply(xcb_shm_get_image_reply(connection, cookie, &error));
        const XcbReply<xcb_generic_error_t> ownedError(error);
        return reply ? imageOf(segment.bytes(), area.size()) : QImage();
    }
    const auto cookie = xcb_get_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, drawable, x, y, width, height, kAllPlanes);
    xcb_generic_error_t *error = nullptr;
    const XcbReply<xcb_get_image_reply_t> reply(xcb_get_image_reply(connection, cookie, &error));
    const XcbReply<xcb_generic_error_t> ownedError(error);
    if (!reply || static_cast<std::size_t>(xcb_get_image_data_length(reply.get())) < byteSize) {
        return {};
    }
    return imageOf(xcb_get_image_data(reply.get()), area.size());
}

QRect onScreen(const xcb_screen_t &screen, const QRect &area)
{
    return area & QRect(0, 0, screen.width_in_pixels, screen.height_in_pixels);
}

/// A window below the panel, in the order in which it is drawn.
struct Layer
{
    xcb_window_t window;
    QRect frame; ///< on the root window, border included
    xcb_visualid_t visual;
    std::uint8_t depth;
};

std::vector<Layer> layersBelow(xcb_connection_t *connection, xcb_window_t root, xcb_window_t window, const QRect &area)
{
    const XcbReply<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(connection, xcb_query_tree(connection, root), nullptr));
    if (!tree) {
        return {};
    }
    const xcb_window_t *children = xcb_query_tree_children(tree.get()); // bottom to top
    const xcb_window_t *end = std::find(children, children + xcb_query_tree_children_length(tree.get()), window);
    // All questions at once, then all answers: a round trip per window would cost tens of milliseconds.
    std::vector<std::pair<xcb_get_window_attributes_cookie_t, xcb_get_geometry_cookie_t>> cookies;
    for (const xcb_window_t *child = children; child != end; ++child) {
        cookies.emplace_back(xcb_get_window_attributes(connection, *child), xcb_get_geometry(connection, *child));
    }
    std::vector<Layer> layers;
    for (std::size_t i = 0; i < cookies.size(); ++i) {
        const XcbReply<xcb_get_window_attributes_reply_t> attributes(
            xcb_get_window_attributes_reply(connection, cookies[i].first, nullptr));
        const XcbReply<xcb_get_geometry_reply_t> geometry(
            xcb_get_geometry_reply(connection, cookies[i].second, nullptr));
        if (!attributes || !geometry || attributes->map_state != XCB_MAP_STATE_VIEWABLE ||
            attributes->_class != XCB_WINDOW_CLASS_INPUT_OUTPUT) {
            continue;
        }
        const QRect frame(geometry->x, geometry->y, geometry->width + 2 * geometry->border_width,
                          geometry->height + 2 * geometry->border_width);
        if (frame.intersects(area)) {
            layers.push_back({children[i], frame, attributes->visual, geometry->depth});
        }
    }
    return layers;
}

/// Draws layers into one pixmap.
class Composition
{
public:
    Composition(xcb_connection_t *connection, const xcb_screen_t &screen, const QRect &area)
        : m_connection(connection)
        , m_screen(screen)
        , m_area(area)
    {
        xcb_discard_reply(connection, xcb_composite_query_version(connection, 0, 4).sequence);
        xcb_discard_reply(connection, xcb_render_query_version(connection, 0, 11).sequence);
        m_formats.reset(
            xcb_render_query_pict_formats_reply(connection, xcb_render_query_pict_formats(connection), nullptr));
        m_pixmap = xcb_generate_id(connection);
        m_picture = xcb_generate_id(connection);
        xcb_create_pixmap(connection, screen.root_depth, m_pixmap, screen.root,
                          static_cast<std::uint16_t>(area.width()), static_cast<std::uint16_t>(area.height()));
        xcb_render_create_picture(connection, m_picture, m_pixmap, formatOf(screen.root_visual), 0, nullptr);
    }
    ~Composition()
    {
        xcb_render_free_picture(m_connection, m_picture);
        xcb_free_pixmap(m_connection, m_pixmap);
    }
    Composition(const Composition &) = delete;
    Composition &operator=(const Composition &) = delete;

    void drawBackground();
    void draw(const Layer &layer);
    /// False when every layer failed: a compositor that is just starting owns its selection before it redirects.
    bool hasDrawnAny();
    QImage pixels() const { return readPixels(m_connection, m_pixmap, QRect(QPoint(0, 0), m_area.size())); }

private:
    xcb_render_pictformat_t formatOf(xcb_visualid_t visual) const;

    xcb_connection_t *m_connection;
    const xcb_screen_t &m_screen;
    QRect m_area;
    XcbReply<xcb_render_query_pict_formats_reply_t> m_formats;
    xcb_pixmap_t m_pixmap;
    xcb_render_picture_t m_picture;
    std::vector<xcb_void_cookie_t> m_namings;
};

xcb_render_pictformat_t Composition::formatOf(xcb_visualid_t visual) const
{
    if (!m_formats) {
        return 0;
    }
    auto screens = xcb_render_query_pict_formats_screens_iterator(m_formats.get());
    for (; screens.rem; xcb_render_pictscreen_next(&screens)) {
        auto depths = xcb_render_pictscreen_depths_iterator(screens.data);
        for (; depths.rem; xcb_render_pictdepth_next(&depths)) {
            auto visuals = xcb_render_pictdepth_visuals_iterator(depths.data);
            for (; visuals.rem; xcb_render_pictvisual_next(&visuals)) {
                if (visuals.data->visual == visual) {
                    return visuals.data->format;
                }
            }
        }
    }
    return 0;
}

/// The pixmap that a wallpaper setter left on the root window; nothing when there is none of the root's depth.
std::optional<xcb_pixmap_t> backgroundPixmap(xcb_connection_t *connection, const xcb_screen_t &screen)
{
    for (const char *name : {"_XROOTPMAP_ID", "ESETROOT_PMAP_ID"}) {
        const auto atomCookie = xcb_intern_atom(connection, 1, static_cast<std::uint16_t>(std::strlen(name)), name);
        const XcbReply<xcb_intern_atom_reply_t> atom(xcb_intern_atom_reply(connection, atomCookie, nullptr));
        if (!atom || atom->atom == XCB_ATOM_NONE) {
            continue;
        }
        const auto cookie = xcb_get_property(connection, 0, screen.root, atom->atom, XCB_ATOM_PIXMAP, 0, 1);
        const XcbReply<xcb_get_property_reply_t> property(xcb_get_property_reply(connection, cookie, nullptr));
        const auto words = propertyWords(property.get());
        if (words.empty()) {
            continue;
        }
        xcb_generic_error_t *error = nullptr; // the pixmap may be gone
        const XcbReply<xcb_get_geometry_reply_t> geometry(
            xcb_get_geometry_reply(connection, xcb_get_geometry(connection, words.front()), &error));
        const XcbReply<xcb_generic_error_t> ownedError(error);
        if (geometry && geometry->depth == screen.root_depth) {
            return words.front();
        }
    }
    return std::nullopt;
}

void Composition::drawBackground()
{
    const auto width = static_cast<std::uint16_t>(m_area.width());
    const auto height = static_cast<std::uint16_t>(m_area.height());
    if (const auto pixmap = backgroundPixmap(m_connection, m_screen)) {
        const xcb_render_picture_t source = xcb_generate_id(m_connection);
        const std::uint32_t repeat = XCB_RENDER_REPEAT_NORMAL;
        xcb_render_create_picture(m_connection, source, *pixmap, formatOf(m_screen.root_visual), XCB_RENDER_CP_REPEAT,
                                  &repeat);
        xcb_render_composite(m_connection, XCB_RENDER_PICT_OP_SRC, source, XCB_RENDER_PICTURE_NONE, m_picture,
                             static_cast<std::int16_t>(m_area.x()), static_cast<std::int16_t>(m_area.y()), 0, 0, 0, 0,
                             width, height);
        xcb_render_free_picture(m_connection, source);
        return;
    }
    constexpr xcb_render_color_t kGrey{0x8080, 0x8080, 0x8080, 0xffff}; // what compositors show where nothing is
    const xcb_rectangle_t all{0, 0, width, height};
    xcb_render_fill_rectangles(m_connection, XCB_RENDER_PICT_OP_SRC, m_picture, kGrey, 1, &all);
}

void Composition::draw(const Layer &layer)
{
    // A window that is unmapped meanwhile, or not redirected yet, has no pixmap: all of this then fails unseen.
    const xcb_pixmap_t pixmap = xcb_generate_id(m_connection);
    const xcb_render_picture_t source = xcb_generate_id(m_connection);
    m_namings.push_back(xcb_composite_name_window_pixmap_checked(m_connection, layer.window, pixmap));
    xcb_render_create_picture(m_connection, source, pixmap, formatOf(layer.visual), 0, nullptr);
    xcb_render_composite(m_connection, XCB_RENDER_PICT_OP_OVER, source, XCB_RENDER_PICTURE_NONE, m_picture, 0, 0, 0, 0,
                         static_cast<std::int16_t>(layer.frame.x() - m_area.x()),
                         static_cast<std::int16_t>(layer.frame.y() - m_area.y()),
                         static_cast<std::uint16_t>(layer.frame.width()),
                         static_cast<std::uint16_t>(layer.frame.height()));
    xcb_render_free_picture(m_connection, source);
    xcb_free_pixmap(m_connection, pixmap);
}

bool Composition::hasDrawnAny()
{
    bool hasAny = m_namings.empty(); // nothing but the background is there
    for (const xcb_void_cookie_t naming : m_namings) {
        const XcbReply<xcb_generic_error_t> error(xcb_request_check(m_connection, naming));
        hasAny = hasAny || !error;
    }
    return hasAny;
}

/// Layers hidden behind an opaque one that covers the whole area need not be drawn.
std::vector<Layer>::const_iterator lowestVisible(const std::vector<Layer> &layers, const QRect &area)
{
    const auto cover = std::find_if(layers.rbegin(), layers.rend(), [&area](const Layer &layer) {
        return layer.depth == 24 && layer.frame.contains(area);
    });
    return cover == layers.rend() ? layers.begin() : std::prev(cover.base());
}

bool hasExtension(xcb_connection_t *connection, xcb_extension_t *extension)
{
    const auto *found = xcb_get_extension_data(connection, extension);
    return found && found->present;
}

} // namespace

QImage captureScreen(xcb_connection_t *connection, const xcb_screen_t &screen, const QRect &area)
{
    const QRect visible = onScreen(screen, area);
    if (visible.isEmpty() || xcb_connection_has_error(connection) ||
        !hasPlainPixels(*xcb_get_setup(connection), screen.root_depth)) {
        return {};
    }
    return readPixels(connection, screen.root, visible);
}

QImage captureBelow(xcb_connection_t *connection, const xcb_screen_t &screen, xcb_window_t window, const QRect &area)
{
    const QRect visible = onScreen(screen, area);
    if (visible.isEmpty() || xcb_connection_has_error(connection) || !hasExtension(connection, &xcb_composite_id) ||
        !hasExtension(connection, &xcb_render_id) || !hasPlainPixels(*xcb_get_setup(connection), screen.root_depth)) {
        return {};
    }
    const std::vector<Layer> layers = layersBelow(connection, screen.root, window, visible);
    Composition composition(connection, screen, visible);
    composition.drawBackground();
    std::for_each(lowestVisible(layers, visible), layers.end(),
                  [&composition](const Layer &layer) { composition.draw(layer); });
    return composition.hasDrawnAny() ? composition.pixels() : QImage();
}

} // namespace ostrelle
