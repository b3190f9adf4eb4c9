#include "platform/x11/X11OverlayWindow.h"

#include <array>
#include <optional>
#include <vector>

#include <xcb/shape.h>
#include <xcb/shm.h>

namespace ostrelle {

struct X11OverlayWindow::Visual
{
    xcb_visualid_t id;
    std::uint8_t depth;
};

namespace {

constexpr std::uint8_t kDepthWithAlpha = 32;

std::optional<xcb_visualid_t> visualWithAlpha(const xcb_screen_t &screen)
{
    for (auto depths = xcb_screen_allowed_depths_iterator(&screen); depths.rem; xcb_depth_next(&depths)) {
        if (depths.data->depth != kDepthWithAlpha) {
            continue;
        }
        for (auto visuals = xcb_depth_visuals_iterator(depths.data); visuals.rem; xcb_visualtype_next(&visuals)) {
            if (visuals.data->_class == XCB_VISUAL_CLASS_TRUE_COLOR && visuals.data->red_mask == 0xff0000 &&
                visuals.data->blue_mask == 0xff) {
                return visuals.data->visual_id;
            }
        }
    }
    return std::nullopt;
}

} // namespace

std::unique_ptr<X11OverlayWindow> X11OverlayWindow::create(WatchConnection &connection, Handlers handlers)
{
    const auto visual = visualWithAlpha(connection.screen());
    const xcb_setup_t *setup = xcb_get_setup(connection.xcb());
    // The canvas is in this machine's order; a server on a machine of another kind is not worth a conversion.
    const auto ownOrder = Q_BYTE_ORDER == Q_BIG_ENDIAN ? XCB_IMAGE_ORDER_MSB_FIRST : XCB_IMAGE_ORDER_LSB_FIRST;
    if (!visual || setup->image_byte_order != ownOrder) {
        return nullptr;
    }
    return std::make_unique<X11OverlayWindow>(connection, Visual{*visual, kDepthWithAlpha}, std::move(handlers));
}

X11OverlayWindow::X11OverlayWindow(WatchConnection &connection, const Visual &visual, Handlers handlers)
    : m_connection(connection)
    , m_handlers(std::move(handlers))
    , m_id(xcb_generate_id(connection.xcb()))
    , m_colormap(xcb_generate_id(connection.xcb()))
    , m_context(xcb_generate_id(connection.xcb()))
    , m_completionEvent(connection.firstEvent(&xcb_shm_id) + XCB_SHM_COMPLETION)
    , m_subscription(connection.onEvent([this](const xcb_generic_event_t &event) { handle(event); }))
{
    xcb_connection_t *xcb = connection.xcb();
    xcb_create_colormap(xcb, XCB_COLORMAP_ALLOC_NONE, m_colormap, connection.root(), visual.id);
    // Without a background the server leaves the picture alone when the window moves.
    constexpr std::uint32_t kOverrideRedirect = 1;
    const std::array<std::uint32_t, 5> values{XCB_BACK_PIXMAP_NONE, 0, kOverrideRedirect, XCB_EVENT_MASK_EXPOSURE,
                                              m_colormap};
    xcb_create_window(
        xcb, visual.depth, m_id, connection.root(), 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, visual.id,
        XCB_CW_BACK_PIXMAP | XCB_CW_BORDER_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK | XCB_CW_COLORMAP,
        values.data());
    xcb_create_gc(xcb, m_context, m_id, 0, nullptr);
    // The type keeps compositors from drawing a shadow around the rectangle; no rectangle at all lets clicks through.
    const xcb_atom_t dock = connection.atom("_NET_WM_WINDOW_TYPE_DOCK");
    xcb_change_property(xcb, XCB_PROP_MODE_REPLACE, m_id, connection.atom("_NET_WM_WINDOW_TYPE"), XCB_ATOM_ATOM, 32, 1,
                        &dock);
    xcb_shape_rectangles(xcb, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT, XCB_CLIP_ORDERING_UNSORTED, m_id, 0, 0, 0, nullptr);
}

X11OverlayWindow::~X11OverlayWindow()
{
    xcb_free_gc(m_connection.xcb(), m_context);
    xcb_destroy_window(m_connection.xcb(), m_id);
    xcb_free_colormap(m_connection.xcb(), m_colormap);
    xcb_flush(m_connection.xcb());
}

void X11OverlayWindow::resize(const QSize &size)
{
    if (m_canvas.size() == size) {
        return;
    }
    m_canvas = QImage();
    m_segment =
        std::make_unique<SharedSegment>(m_connection.xcb(), static_cast<std::size_t>(size.width() * size.height() * 4));
    if (m_segment->isAttached()) {
        m_canvas = QImage(m_segment->bytes(), size.width(), size.height(), QImage::Format_ARGB32_Premultiplied);
    } else {
        m_segment.reset();
        m_canvas = QImage(size, QImage::Format_ARGB32_Premultiplied);
    }
    m_isBeingRead = false; // what is still read belongs to the segment before
    const std::array<std::uint32_t, 2> values{static_cast<std::uint32_t>(size.width()),
                                              static_cast<std::uint32_t>(size.height())};
    xcb_configure_window(m_connection.xcb(), m_id, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, values.data());
}

void X11OverlayWindow::setShape(const QRegion &shape)
{
    std::vector<xcb_rectangle_t> rectangles;
    rectangles.reserve(static_cast<std::size_t>(shape.rectCount()));
    for (const QRect &rect : shape) {
        rectangles.push_back({static_cast<std::int16_t>(rect.x()), static_cast<std::int16_t>(rect.y()),
                              static_cast<std::uint16_t>(rect.width()), static_cast<std::uint16_t>(rect.height())});
    }
    xcb_shape_rectangles(m_connection.xcb(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING, XCB_CLIP_ORDERING_YX_BANDED, m_id,
                         0, 0, static_cast<std::uint32_t>(rectangles.size()), rectangles.data());
}

void X11OverlayWindow::clearShape()
{
    xcb_shape_mask(m_connection.xcb(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING, m_id, 0, 0, XCB_PIXMAP_NONE);
}

void X11OverlayWindow::present(const QPoint &position)
{
    move(position);
    if (!std::exchange(m_isMapped, true)) {
        xcb_map_window(m_connection.xcb(), m_id);
    }
    const auto width = static_cast<std::uint16_t>(m_canvas.width());
    const auto height = static_cast<std::uint16_t>(m_canvas.height());
    if (m_segment) {
        constexpr std::uint8_t kTellWhenRead = 1;
        xcb_shm_put_image(m_connection.xcb(), m_id, m_context, width, height, 0, 0, width, height, 0, 0,
                          kDepthWithAlpha, XCB_IMAGE_FORMAT_Z_PIXMAP, kTellWhenRead, m_segment->id(), 0);
        m_isBeingRead = true;
    } else {
        xcb_put_image(m_connection.xcb(), XCB_IMAGE_FORMAT_Z_PIXMAP, m_id, m_context, width, height, 0, 0, 0,
                      kDepthWithAlpha, static_cast<std::uint32_t>(m_canvas.sizeInBytes()), m_canvas.constBits());
    }
    m_connection.flush();
}

void X11OverlayWindow::move(const QPoint &position)
{
    // What was mapped meanwhile, a notification perhaps, must not cover it.
    const std::array<std::uint32_t, 3> values{static_cast<std::uint32_t>(position.x()),
                                              static_cast<std::uint32_t>(position.y()), XCB_STACK_MODE_ABOVE};
    xcb_configure_window(m_connection.xcb(), m_id,
                         XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_STACK_MODE, values.data());
    m_connection.flush();
}

void X11OverlayWindow::handle(const xcb_generic_event_t &event)
{
    const int type = event.response_type & 0x7f;
    if (m_segment && type == m_completionEvent) {
        const auto &completion = reinterpret_cast<const xcb_shm_completion_event_t &>(event);
        if (completion.drawable == m_id && completion.shmseg == m_segment->id()) {
            m_isBeingRead = false;
            m_handlers.read();
        }
    } else if (type == XCB_EXPOSE) {
        const auto &expose = reinterpret_cast<const xcb_expose_event_t &>(event);
        if (expose.window == m_id && expose.count == 0) {
            m_handlers.exposed();
        }
    }
}

} // namespace ostrelle
