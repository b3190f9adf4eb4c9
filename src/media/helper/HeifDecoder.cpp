#include "media_helper/ByteSource.h"
#include "media_helper/Decoders.h"
#include "media_helper/PictureBuilder.h"

#include <libheif/heif.h>

#include <algorithm>
#include <memory>
#include <utility>

namespace ostrelle {
namespace {

struct Free
{
    void operator()(heif_context *context) const { heif_context_free(context); }
    void operator()(heif_image_handle *handle) const { heif_image_handle_release(handle); }
    void operator()(heif_image *image) const { heif_image_release(image); }
};
using Handle = std::unique_ptr<heif_image_handle, Free>;

std::int64_t position(void *reader)
{
    return static_cast<std::int64_t>(static_cast<ByteReader *>(reader)->position());
}

int read(void *data, std::size_t size, void *reader)
{
    return static_cast<ByteReader *>(reader)->read({static_cast<std::uint8_t *>(data), size}) == size ? 0 : 1;
}

int seek(std::int64_t place, void *reader)
{
    static_cast<ByteReader *>(reader)->seek(static_cast<std::uint64_t>(std::max<std::int64_t>(place, 0)));
    return 0;
}

heif_reader_grow_status grow(std::int64_t size, void *reader)
{
    const std::uint64_t end = static_cast<ByteReader *>(reader)->source().size();
    return size >= 0 && static_cast<std::uint64_t>(size) <= end ? heif_reader_grow_status_size_reached
                                                                : heif_reader_grow_status_size_beyond_eof;
}

constexpr heif_reader kReader{1, position, read, seek, grow};

PixelSize sizeOf(const heif_image_handle *handle)
{
    return {heif_image_handle_get_width(handle), heif_image_handle_get_height(handle)};
}

/// The small picture that cameras put beside the large one, where it is large enough.
Handle embeddedThumbnail(const heif_image_handle *primary, const PictureBuilder &builder)
{
    heif_item_id item = 0;
    heif_image_handle *found = nullptr;
    if (heif_image_handle_get_list_of_thumbnail_IDs(primary, &item, 1) < 1 ||
        heif_image_handle_get_thumbnail(primary, item, &found).code != heif_error_Ok)
        return {};
    Handle thumbnail(found);
    const PixelSize full = sizeOf(primary);
    const PixelSize small = sizeOf(found);
    const bool isLargeEnough = builder.shrinkScale(full) * full.width <= small.width &&
                               builder.shrinkScale(full) * full.height <= small.height;
    return isLargeEnough ? std::move(thumbnail) : Handle();
}

std::vector<std::uint8_t> iccIn(const heif_image_handle *handle)
{
    std::vector<std::uint8_t> icc(heif_image_handle_get_raw_color_profile_size(handle));
    if (icc.empty() || heif_image_handle_get_raw_color_profile(handle, icc.data()).code != heif_error_Ok)
        return {};
    return icc;
}

HelperStatus deliver(const heif_image_handle *chosen, PictureFacts facts, PictureBuilder &builder)
{
    heif_image *decoded = nullptr;
    if (heif_decode_image(chosen, &decoded, heif_colorspace_RGB, heif_chroma_interleaved_RGBA, nullptr).code !=
        heif_error_Ok)
        return HelperStatus::Broken;
    const std::unique_ptr<heif_image, Free> image(decoded);
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
    ByteReader reader(source);
    const std::unique_ptr<heif_context, Free> context(heif_context_alloc());
    heif_image_handle *found = nullptr;
    if (!context || heif_context_read_from_reader(context.get(), &kReader, &reader, nullptr).code != heif_error_Ok ||
        heif_context_get_primary_image_handle(context.get(), &found).code != heif_error_Ok)
        return HelperStatus::Broken;
    const Handle primary(found);
    PictureFacts facts;
    facts.full = sizeOf(found);
    if (std::int64_t(facts.full.width) * facts.full.height > kWholePicturePixels)
        return HelperStatus::TooLarge;
    facts.layout = PixelLayout::Rgba;
    facts.icc = iccIn(found);
    const Handle thumbnail = embeddedThumbnail(found, builder);
    return deliver(thumbnail ? thumbnail.get() : found, std::move(facts), builder);
}

} // namespace ostrelle
