#include "media_helper/ByteSource.h"
#include "media_helper/Decoders.h"
#include "media_helper/Exif.h"
#include "media_helper/JpegReader.h"
#include "media_helper/PictureBuilder.h"

#include <algorithm>
#include <csetjmp>
#include <cstdio>
#include <utility>

#include <jpeglib.h>

namespace ostrelle {
namespace {

bool start(JpegReader &reader)
{
    if (setjmp(reader.failed) != 0) // NOLINT(modernize-avoid-setjmp-longjmp,cert-err52-cpp): libjpeg's protocol
        return false;
    return jpeg_start_decompress(&reader.info) != 0;
}

bool readRows(JpegReader &reader, JSAMPROW row, PictureBuilder &builder)
{
    if (setjmp(reader.failed) != 0) // NOLINT(modernize-avoid-setjmp-longjmp,cert-err52-cpp): libjpeg's protocol
        return false;
    while (reader.info.output_scanline < reader.info.output_height) {
        if (jpeg_read_scanlines(&reader.info, &row, 1) != 1)
            return false;
        builder.addRow(row);
    }
    return true;
}

PixelSize scaledSize(PixelSize full, unsigned denominator)
{
    const auto scaled = [&](int length) {
        return (length + static_cast<int>(denominator) - 1) / static_cast<int>(denominator);
    };
    return {scaled(full.width), scaled(full.height)};
}

/// Decoding at an eighth needs one coefficient of 64: much the quickest way to shrink.
void chooseScale(jpeg_decompress_struct &info, double scale)
{
    unsigned denominator = 8;
    while (denominator > 1 && 1.0 / denominator < scale)
        denominator /= 2;
    info.scale_num = 1;
    info.scale_denom = denominator;
    info.dct_method = JDCT_ISLOW;
    info.do_fancy_upsampling = denominator == 1 ? TRUE : FALSE;
}

PixelLayout chooseLayout(jpeg_decompress_struct &info)
{
    switch (info.jpeg_color_space) {
    case JCS_GRAYSCALE:
        info.out_color_space = JCS_GRAYSCALE;
        return PixelLayout::Gray;
    case JCS_CMYK:
    case JCS_YCCK:
        info.out_color_space = JCS_CMYK;
        return info.saw_Adobe_marker ? PixelLayout::InvertedCmyk : PixelLayout::Cmyk;
    default:
        info.out_color_space = JCS_RGB;
        return PixelLayout::Rgb;
    }
}

HelperStatus decode(JpegReader &reader, PictureBuilder &builder)
{
    if (!reader.readHeader())
        return HelperStatus::Broken;
    PictureFacts facts;
    facts.full = {static_cast<int>(reader.info.image_width), static_cast<int>(reader.info.image_height)};
    facts.orientation = exifFacts(reader.exif()).orientation;
    facts.layout = chooseLayout(reader.info);
    facts.icc = reader.icc();
    chooseScale(reader.info, builder.shrinkScale(facts.full));
    facts.decoded = scaledSize(facts.full, reader.info.scale_denom);
    const PixelSize decoded = facts.decoded;
    const int channels = channelsOf(facts.layout);
    if (!builder.begin(std::move(facts)))
        return builder.isTooLarge() ? HelperStatus::TooLarge : HelperStatus::Broken;
    if (!start(reader) || static_cast<int>(reader.info.output_width) != decoded.width ||
        static_cast<int>(reader.info.output_height) != decoded.height || reader.info.output_components != channels)
        return HelperStatus::Broken;
    std::vector<std::uint8_t> row(static_cast<std::size_t>(decoded.width) * static_cast<std::size_t>(channels));
    return readRows(reader, row.data(), builder) ? HelperStatus::Done : HelperStatus::Broken;
}

} // namespace

HelperStatus decodeJpeg(ByteSource &source, PictureBuilder &builder)
{
    JpegReader reader(source);
    return decode(reader, builder);
}

} // namespace ostrelle
