#include "platform/x11/PixelLayout.h"

#include <QtEndian>

#include <algorithm>
#include <bit>

namespace ostrelle {

namespace {

const xcb_visualtype_t *visualOf(const xcb_screen_t &screen, xcb_visualid_t id)
{
    for (auto depths = xcb_screen_allowed_depths_iterator(&screen); depths.rem; xcb_depth_next(&depths)) {
        const xcb_visualtype_t *visuals = xcb_depth_visuals(depths.data);
        const xcb_visualtype_t *end = visuals + xcb_depth_visuals_length(depths.data);
        const auto *found =
            std::find_if(visuals, end, [id](const xcb_visualtype_t &visual) { return visual.visual_id == id; });
        if (found != end) {
            return found;
        }
    }
    return nullptr;
}

} // namespace

std::optional<PixelLayout> PixelLayout::ofRoot(const xcb_setup_t &setup, const xcb_screen_t &screen)
{
    const xcb_visualtype_t *visual = visualOf(screen, screen.root_visual);
    const xcb_format_t *formats = xcb_setup_pixmap_formats(&setup);
    const xcb_format_t *end = formats + xcb_setup_pixmap_formats_length(&setup);
    const auto *format =
        std::find_if(formats, end, [&screen](const xcb_format_t &one) { return one.depth == screen.root_depth; });
    const bool hasColours =
        visual && (visual->_class == XCB_VISUAL_CLASS_TRUE_COLOR || visual->_class == XCB_VISUAL_CLASS_DIRECT_COLOR);
    if (!hasColours || format == end || (format->bits_per_pixel != 16 && format->bits_per_pixel != 32)) {
        return std::nullopt;
    }
    return PixelLayout(format->bits_per_pixel, visual->red_mask, visual->green_mask, visual->blue_mask,
                       setup.image_byte_order == XCB_IMAGE_ORDER_MSB_FIRST);
}

PixelLayout::PixelLayout(int bitsPerPixel, std::uint32_t red, std::uint32_t green, std::uint32_t blue, bool isBigEndian)
    : m_bytesPerPixel(bitsPerPixel / 8)
    , m_isBigEndian(isBigEndian)
    , m_isPlain(red == 0xff0000 && green == 0xff00 && blue == 0xff)
    , m_red(component(red))
    , m_green(component(green))
    , m_blue(component(blue))
{
}

PixelLayout::Component PixelLayout::component(std::uint32_t mask)
{
    const int shift = mask ? std::countr_zero(mask) : 0;
    return {mask, shift, std::max(1.0, static_cast<double>(mask >> shift))};
}

std::uint32_t PixelLayout::valueAt(const uchar *pixel) const
{
    if (m_bytesPerPixel == 2) {
        return m_isBigEndian ? qFromBigEndian<quint16>(pixel) : qFromLittleEndian<quint16>(pixel);
    }
    return m_isBigEndian ? qFromBigEndian<quint32>(pixel) : qFromLittleEndian<quint32>(pixel);
}

double PixelLayout::part(std::uint32_t value, const Component &component)
{
    return ((value & component.mask) >> component.shift) / component.largest;
}

PickedColour PixelLayout::colour(std::uint32_t value) const
{
    return {part(value, m_red), part(value, m_green), part(value, m_blue)};
}

QRgb PixelLayout::rgb(std::uint32_t value) const
{
    if (m_isPlain) {
        return value | 0xff000000U;
    }
    const auto eightBits = [value](const Component &component) { return qRound(255 * part(value, component)); };
    return qRgb(eightBits(m_red), eightBits(m_green), eightBits(m_blue));
}

} // namespace ostrelle
