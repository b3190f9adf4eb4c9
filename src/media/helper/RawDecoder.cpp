#include "media_helper/ByteSource.h"
#include "media_helper/Decoders.h"
#include "media_helper/Orientation.h"
#include "media_helper/PictureBuilder.h"
#include "media_helper/RawStream.h"

#include <libraw/libraw.h>

#include <memory>
#include <optional>
#include <utility>

namespace ostrelle {
namespace {

/// LibRaw's own numbers for how the camera was held.
int orientationOf(int flip)
{
    switch (flip) {
    case 3:
        return 3;
    case 5:
        return 8;
    case 6:
        return 6;
    default:
        return 1;
    }
}

HelperStatus deliverBitmap(const libraw_thumbnail_t &thumbnail, int orientation, PictureBuilder &builder)
{
    PictureFacts facts;
    facts.full = facts.decoded = {thumbnail.twidth, thumbnail.theight};
    facts.layout = PixelLayout::Rgb;
    facts.orientation = orientation;
    const std::size_t stride = 3 * std::size_t(thumbnail.twidth);
    if (thumbnail.tlength < stride * thumbnail.theight || !builder.begin(std::move(facts)))
        return HelperStatus::Broken;
    for (std::size_t row = 0; row < thumbnail.theight; ++row)
        builder.addRow(reinterpret_cast<const std::uint8_t *>(thumbnail.thumb) + row * stride);
    return HelperStatus::Done;
}

HelperStatus deliverPreview(LibRaw &raw, PictureBuilder &builder)
{
    if (raw.unpack_thumb() != LIBRAW_SUCCESS)
        return HelperStatus::NoPicture;
    const libraw_thumbnail_t &thumbnail = raw.imgdata.thumbnail;
    if (thumbnail.tformat == LIBRAW_THUMBNAIL_BITMAP)
        return deliverBitmap(thumbnail, orientationOf(raw.imgdata.sizes.flip), builder);
    if (thumbnail.tformat != LIBRAW_THUMBNAIL_JPEG)
        return HelperStatus::NoPicture;
    // Many previews do not say themselves how they were held.
    builder.assumeOrientation(orientationOf(raw.imgdata.sizes.flip));
    MemorySource jpeg({reinterpret_cast<const std::uint8_t *>(thumbnail.thumb), thumbnail.tlength});
    return decodeJpeg(jpeg, builder);
}

/// Nothing where LibRaw does not know the file.
std::optional<HelperStatus> decodedByLibRaw(ByteSource &source, PictureBuilder &builder)
{
    RawStream stream(source);
    const auto raw = std::make_unique<LibRaw>();
    if (raw->open_datastream(&stream) != LIBRAW_SUCCESS)
        return std::nullopt;
    return deliverPreview(*raw, builder);
}

} // namespace

HelperStatus decodeRaw(ByteSource &source, PictureBuilder &builder)
{
    return decodedByLibRaw(source, builder).value_or(HelperStatus::Broken);
}

HelperStatus decodeRawOrTiff(ByteSource &source, PictureBuilder &builder)
{
    if (const auto status = decodedByLibRaw(source, builder))
        return *status;
    const HelperStatus status = decodeAnyTiff(source, builder);
    return status == HelperStatus::Declined ? HelperStatus::Broken : status;
}

} // namespace ostrelle
