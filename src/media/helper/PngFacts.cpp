#include "media_helper/Exif.h"
#include "media_helper/ImageFacts.h"
#include "media_helper/PngReader.h"

#include <csetjmp>

namespace ostrelle {
namespace {

constexpr double kMetresPerInch = 0.0254;

std::optional<double> resolutionIn(const PngReader &reader)
{
    png_uint_32 x = 0;
    png_uint_32 y = 0;
    int unit = PNG_RESOLUTION_UNKNOWN;
    if (png_get_pHYs(reader.png, reader.info, &x, &y, &unit) != 0 && unit == PNG_RESOLUTION_METER)
        return x * kMetresPerInch;
    return exifFacts(reader.exif()).dpi;
}

} // namespace

std::optional<ImageFacts> readPngFacts(ByteSource &source)
{
    PngReader reader(source);
    if (!reader.readHeader(PngReader::Pixels::Unread))
        return std::nullopt;
    const int type = png_get_color_type(reader.png, reader.info);
    ImageFacts facts;
    facts.format = "PNG";
    facts.width = png_get_image_width(reader.png, reader.info);
    facts.height = png_get_image_height(reader.png, reader.info);
    facts.model = (type & PNG_COLOR_MASK_COLOR) != 0 ? color_model::kRgb : color_model::kGray;
    facts.icc = reader.icc();
    // The colours in a palette have eight bits, however short their numbers are.
    facts.bitDepth = type == PNG_COLOR_TYPE_PALETTE ? 8 : png_get_bit_depth(reader.png, reader.info);
    facts.hasAlpha = (type & PNG_COLOR_MASK_ALPHA) != 0 || png_get_valid(reader.png, reader.info, PNG_INFO_tRNS) != 0;
    facts.dpi = resolutionIn(reader);
    return facts;
}

} // namespace ostrelle
