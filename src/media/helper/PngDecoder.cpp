#include "media_helper/Decoders.h"
#include "media_helper/Exif.h"
#include "media_helper/PictureBuilder.h"
#include "media_helper/PngReader.h"

#include <csetjmp>
#include <utility>

namespace ostrelle {
namespace {

/// Nothing in here has a destructor: an error of libpng jumps out of it.
bool readRows(const PngReader &reader, std::size_t stride, std::uint8_t *rows, PictureBuilder &builder)
{
    if (setjmp(png_jmpbuf(reader.png)) != 0) // NOLINT(modernize-avoid-setjmp-longjmp,cert-err52-cpp): libpng's protocol
        return false;
    const std::size_t height = png_get_image_height(reader.png, reader.info);
    const int passes = reader.isInterlaced ? PNG_INTERLACE_ADAM7_PASSES : 1;
    for (int pass = 0; pass < passes; ++pass) {
        for (std::size_t row = 0; row < height; ++row) {
            std::uint8_t *place = reader.isInterlaced ? rows + row * stride : rows;
            png_read_row(reader.png, place, nullptr);
            if (pass == passes - 1)
                builder.addRow(place);
        }
    }
    return true;
}

std::optional<PixelLayout> layoutOf(const PngReader &reader)
{
    if (png_get_bit_depth(reader.png, reader.info) != 8)
        return std::nullopt;
    switch (png_get_channels(reader.png, reader.info)) {
    case 1:
        return PixelLayout::Gray;
    case 2:
        return PixelLayout::GrayAlpha;
    case 3:
        return PixelLayout::Rgb;
    case 4:
        return PixelLayout::Rgba;
    default:
        return std::nullopt;
    }
}

HelperStatus decode(const PngReader &reader, PictureBuilder &builder)
{
    const auto layout = layoutOf(reader);
    if (!layout)
        return HelperStatus::Broken;
    PictureFacts facts;
    facts.full = facts.decoded = {static_cast<int>(png_get_image_width(reader.png, reader.info)),
                                  static_cast<int>(png_get_image_height(reader.png, reader.info))};
    const PixelSize size = facts.full;
    facts.layout = *layout;
    facts.orientation = exifFacts(reader.exif()).orientation;
    facts.icc = reader.icc();
    if (!builder.begin(std::move(facts)))
        return builder.isTooLarge() ? HelperStatus::TooLarge : HelperStatus::Broken;
    if (reader.isInterlaced && std::int64_t(size.width) * size.height > kWholePicturePixels)
        return HelperStatus::TooLarge;
    const std::size_t stride = png_get_rowbytes(reader.png, reader.info);
    // One row, or all of an interlaced picture.
    std::vector<std::uint8_t> rows(stride * static_cast<std::size_t>(reader.isInterlaced ? size.height : 1));
    return readRows(reader, stride, rows.data(), builder) ? HelperStatus::Done : HelperStatus::Broken;
}

} // namespace

HelperStatus decodePng(ByteSource &source, PictureBuilder &builder)
{
    PngReader reader(source);
    if (!reader.readHeader(PngReader::Pixels::EightBits))
        return HelperStatus::Broken;
    return decode(reader, builder);
}

} // namespace ostrelle
