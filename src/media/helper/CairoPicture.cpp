#include "media_helper/CairoPicture.h"

#include "media_helper/PictureBuilder.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>
#include <utility>
#include <vector>

namespace ostrelle {
namespace {

struct DestroySurface
{
    void operator()(cairo_surface_t *surface) const { cairo_surface_destroy(surface); }
};
struct DestroyCairo
{
    void operator()(cairo_t *cairo) const { cairo_destroy(cairo); }
};

/// Whole, and not so large that nothing could be drawn.
PixelSize unitSize(double width, double height)
{
    const auto whole = [](double length) { return static_cast<int>(std::clamp(std::ceil(length), 1.0, 65535.0)); };
    return {whole(width), whole(height)};
}

/// cairo's pixels are numbers with alpha on top.
void deliverRow(const unsigned char *row, std::vector<std::uint8_t> &rgba, PictureBuilder &builder)
{
    for (std::size_t i = 0; i < rgba.size(); i += 4) {
        std::uint32_t pixel = 0;
        std::memcpy(&pixel, row + i, sizeof pixel);
        rgba[i] = static_cast<std::uint8_t>(pixel >> 16U);
        rgba[i + 1] = static_cast<std::uint8_t>(pixel >> 8U);
        rgba[i + 2] = static_cast<std::uint8_t>(pixel);
        rgba[i + 3] = static_cast<std::uint8_t>(pixel >> 24U);
    }
    builder.addRow(rgba.data());
}

} // namespace

HelperStatus deliverDrawing(double width, double height, PictureBuilder &builder,
                            const std::function<bool(cairo_t *cairo, PixelSize pixels)> &draw)
{
    if (!(width > 0) || !(height > 0))
        return HelperStatus::Broken;
    PictureFacts facts;
    facts.full = unitSize(width, height);
    const double scale = builder.drawScale(facts.full);
    facts.decoded = unitSize(std::round(width * scale), std::round(height * scale));
    facts.layout = PixelLayout::PremultipliedRgba;
    const PixelSize pixels = facts.decoded;
    if (!builder.begin(std::move(facts)))
        return HelperStatus::TooLarge;
    const std::unique_ptr<cairo_surface_t, DestroySurface> surface(
        cairo_image_surface_create(CAIRO_FORMAT_ARGB32, pixels.width, pixels.height));
    const std::unique_ptr<cairo_t, DestroyCairo> cairo(cairo_create(surface.get()));
    if (cairo_status(cairo.get()) != CAIRO_STATUS_SUCCESS)
        return HelperStatus::OutOfMemory;
    if (!draw(cairo.get(), pixels))
        return HelperStatus::Broken;
    cairo_surface_flush(surface.get());
    const unsigned char *rows = cairo_image_surface_get_data(surface.get());
    const int stride = cairo_image_surface_get_stride(surface.get());
    std::vector<std::uint8_t> rgba(4 * static_cast<std::size_t>(pixels.width));
    for (int row = 0; row < pixels.height; ++row)
        deliverRow(rows + std::ptrdiff_t(row) * stride, rgba, builder);
    return HelperStatus::Done;
}

} // namespace ostrelle
