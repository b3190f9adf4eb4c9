#include "media_helper/Exif.h"
#include "media_helper/ImageFacts.h"
#include "media_helper/JpegReader.h"

namespace ostrelle {
namespace {

constexpr double kCentimetresPerInch = 2.54;

std::string_view modelOf(const jpeg_decompress_struct &info)
{
    switch (info.jpeg_color_space) {
    case JCS_GRAYSCALE:
        return color_model::kGray;
    case JCS_CMYK:
    case JCS_YCCK:
        return color_model::kCmyk;
    case JCS_UNKNOWN: // of a file that ends early, too
        return info.num_components == 1   ? color_model::kGray
               : info.num_components == 4 ? color_model::kCmyk
                                          : color_model::kRgb;
    default:
        return color_model::kRgb;
    }
}

/// JFIF's own figure; its unit 0 states nothing but how wide a pixel is for its height.
std::optional<double> jfifDpi(const jpeg_decompress_struct &info)
{
    if (info.saw_JFIF_marker == FALSE || info.density_unit == 0)
        return std::nullopt;
    return info.density_unit == 2 ? info.X_density * kCentimetresPerInch : info.X_density;
}

} // namespace

std::optional<ImageFacts> readJpegFacts(ByteSource &source)
{
    JpegReader reader(source);
    // The dimensions stand before the tables, of which there are kinds that the library cannot decode.
    if (!reader.readHeader() && reader.info.image_width == 0)
        return std::nullopt;
    ImageFacts facts;
    facts.format = "JPEG";
    facts.width = reader.info.image_width;
    facts.height = reader.info.image_height;
    facts.model = modelOf(reader.info);
    facts.icc = reader.icc();
    facts.bitDepth = reader.info.data_precision;
    // Cameras fill JFIF with a default; what they mean stands in Exif.
    facts.dpi = exifFacts(reader.exif()).dpi;
    if (!facts.dpi)
        facts.dpi = jfifDpi(reader.info);
    return facts;
}

} // namespace ostrelle
