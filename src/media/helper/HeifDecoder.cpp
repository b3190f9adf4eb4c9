#include "media_helper/Decoders.h"
#include "media_helper/HeifReader.h"
#include "media_helper/PictureBuilder.h"

#include <memory>
#include <utility>

namespace ostrelle {
namespace {

PixelSize sizeOf(const heif_image_handle *handle)
{
    return {heif_image_handle_get_width(handle), heif_image_handle_get_height(handle)};
}

/// The small picture that cameras put beside the large one, where it is large enough.
HeifHandle embeddedThumbnail(const heif_image_handle *primary, const PictureBuilder &builder)
{
    heif_item_id item = 0;
    heif_image_handle *found = nullptr;
    if (heif_image_handle_get_list_of_thumbnail_IDs(primary, &item, 1) < 1 ||
        heif_image_handle_get_thumbnail(primary, item, &found).code != heif_error_Ok)
        return {};
    HeifHandle thumbnail(found);
    const PixelSize full = sizeOf(primary);
    const PixelSize small = sizeOf(found);
    const bool isLargeEnough = builder.shrinkScale(full) * full.width <= small.width &&
                               builder.shrinkScale(full) * full.height <= small.height;
    return isLargeEnough ? std::move(thumbnail) : HeifHandle();
}

HelperStatus deliver(const heif_image_handle *chosen, PictureFacts facts, PictureBuilder &builder)
{
    heif_image *decoded = nullptr;
    if (heif_decode_image(chosen, &decoded, heif_colorspace_RGB, heif_chroma_interleaved_RGBA, nullptr).code !=
        heif_error_Ok)
        return HelperStatus::Broken;
    const std::unique_ptr<heif_image, FreeHeif> image(decoded);
    facts.decoded = {heif_image_get_width(decoded, heif_channel_interleaved),
                     heif_image_get_height(decoded, heif_channel_interleaved)};
    int stride = 0;
    const std::uint8_t *rows = heif_image_get_plane_readonly(decoded, heif_channel_interleaved, &stride);
    const PixelSize size = facts.decoded;
    if (!rows || !builder.begin(std::move(facts)))
        return HelperStatus::Broken;
    for (int row = 0; row < size.height; ++row)
        builder.addRow(rows + std::ptrdiff_t(row) * stride);
    return HelperStatus::Done;
}

} // namespace

HelperStatus decodeHeif(ByteSource &source, PictureBuilder &builder)
{
    const HeifFile file(source);
    const heif_image_handle *const found = file.primary.get();
    if (!found)
        return HelperStatus::Broken;
    PictureFacts facts;
    facts.full = sizeOf(found);
    if (std::int64_t(facts.full.width) * facts.full.height > kWholePicturePixels)
        return HelperStatus::TooLarge;
    facts.layout = PixelLayout::Rgba;
    facts.icc = heifIcc(found);
    const HeifHandle thumbnail = embeddedThumbnail(found, builder);
    return deliver(thumbnail ? thumbnail.get() : found, std::move(facts), builder);
}

} // namespace ostrelle
