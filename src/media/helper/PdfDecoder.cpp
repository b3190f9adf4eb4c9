#include "media_helper/ByteSource.h"
#include "media_helper/CairoPicture.h"
#include "media_helper/Decoders.h"

#include <poppler.h>

#include <memory>

namespace ostrelle {
namespace {

constexpr std::uint64_t kLongestFile = 512U << 20U;

struct Unref
{
    void operator()(void *object) const { g_object_unref(object); }
};
struct UnrefBytes
{
    void operator()(GBytes *bytes) const { g_bytes_unref(bytes); }
};

} // namespace

HelperStatus decodePdf(ByteSource &source, PictureBuilder &builder)
{
    const std::vector<std::uint8_t> content = source.whole(kLongestFile);
    if (content.empty())
        return HelperStatus::TooLarge;
    const std::unique_ptr<GBytes, UnrefBytes> bytes(g_bytes_new_static(content.data(), content.size()));
    const std::unique_ptr<PopplerDocument, Unref> document(
        poppler_document_new_from_bytes(bytes.get(), nullptr, nullptr));
    if (!document || poppler_document_get_n_pages(document.get()) < 1)
        return HelperStatus::Broken;
    const std::unique_ptr<PopplerPage, Unref> page(poppler_document_get_page(document.get(), 0));
    if (!page)
        return HelperStatus::Broken;
    double width = 0;
    double height = 0;
    poppler_page_get_size(page.get(), &width, &height);
    return deliverDrawing(width, height, builder, [&](cairo_t *cairo, PixelSize pixels) {
        // Paper is white.
        cairo_set_source_rgb(cairo, 1, 1, 1);
        cairo_paint(cairo);
        cairo_scale(cairo, pixels.width / width, pixels.height / height);
        poppler_page_render(page.get(), cairo);
        return cairo_status(cairo) == CAIRO_STATUS_SUCCESS;
    });
}

} // namespace ostrelle
