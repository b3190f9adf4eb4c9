#include "media_helper/ByteSource.h"
#include "media_helper/CairoPicture.h"
#include "media_helper/Decoders.h"
#include "media_helper/ImageFacts.h"

#include <librsvg/rsvg.h>

#include <cmath>
#include <memory>

namespace ostrelle {
namespace {

constexpr std::uint64_t kLongestFile = 64U << 20U;
/// What a drawing without any size is drawn at.
constexpr double kDefaultSide = 512;
/// A pixel of CSS.
constexpr double kDotsPerInch = 96;

struct Unref
{
    void operator()(void *object) const { g_object_unref(object); }
};

struct DrawingSize
{
    double width = kDefaultSide;
    double height = kDefaultSide;
};

DrawingSize sizeOf(RsvgHandle *handle)
{
    DrawingSize size;
    if (rsvg_handle_get_intrinsic_size_in_pixels(handle, &size.width, &size.height) && size.width > 0 &&
        size.height > 0)
        return size;
    gboolean hasBox = FALSE;
    RsvgRectangle box{};
    rsvg_handle_get_intrinsic_dimensions(handle, nullptr, nullptr, nullptr, nullptr, &hasBox, &box);
    return hasBox ? DrawingSize{box.width, box.height} : DrawingSize();
}

std::unique_ptr<RsvgHandle, Unref> openedDrawing(const std::vector<std::uint8_t> &bytes)
{
    const std::unique_ptr<GInputStream, Unref> stream(
        g_memory_input_stream_new_from_data(bytes.data(), static_cast<gssize>(bytes.size()), nullptr));
    // Without a base, nothing outside of the drawing is referred to.
    std::unique_ptr<RsvgHandle, Unref> handle(
        rsvg_handle_new_from_stream_sync(stream.get(), nullptr, RSVG_HANDLE_FLAGS_NONE, nullptr, nullptr));
    if (handle)
        rsvg_handle_set_dpi(handle.get(), kDotsPerInch);
    return handle;
}

} // namespace

HelperStatus decodeSvg(ByteSource &source, PictureBuilder &builder)
{
    const std::vector<std::uint8_t> bytes = source.whole(kLongestFile);
    if (bytes.empty())
        return HelperStatus::TooLarge;
    const auto handle = openedDrawing(bytes);
    if (!handle)
        return HelperStatus::Broken;
    const DrawingSize size = sizeOf(handle.get());
    return deliverDrawing(size.width, size.height, builder, [&](cairo_t *cairo, PixelSize pixels) {
        const RsvgRectangle viewport{0, 0, static_cast<double>(pixels.width), static_cast<double>(pixels.height)};
        return rsvg_handle_render_document(handle.get(), cairo, &viewport, nullptr) != FALSE;
    });
}

std::optional<ImageFacts> readSvgFacts(ByteSource &source)
{
    const std::vector<std::uint8_t> bytes = source.whole(kLongestFile);
    const auto handle = bytes.empty() ? nullptr : openedDrawing(bytes);
    if (!handle)
        return std::nullopt;
    const DrawingSize size = sizeOf(handle.get());
    ImageFacts facts;
    facts.format = "SVG";
    facts.width = std::llround(std::ceil(size.width));
    facts.height = std::llround(std::ceil(size.height));
    facts.model = color_model::kRgb;
    facts.hasAlpha = true;
    return facts;
}

} // namespace ostrelle
