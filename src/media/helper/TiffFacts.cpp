#include "media_helper/ImageFacts.h"
#include "media_helper/TiffReader.h"

namespace ostrelle {
namespace {

constexpr double kCentimetresPerInch = 2.54;

std::string_view modelOf(std::uint16_t photometric)
{
    switch (photometric) {
    case PHOTOMETRIC_MINISWHITE:
    case PHOTOMETRIC_MINISBLACK:
    case PHOTOMETRIC_MASK:
    case PHOTOMETRIC_LOGL:
        return color_model::kGray;
    case PHOTOMETRIC_SEPARATED:
        return color_model::kCmyk;
    case PHOTOMETRIC_CIELAB:
    case PHOTOMETRIC_ICCLAB:
    case PHOTOMETRIC_ITULAB:
        return color_model::kLab;
    default:
        return color_model::kRgb;
    }
}

bool hasAlpha(TIFF *tiff)
{
    std::uint16_t count = 0;
    const std::uint16_t *kinds = nullptr;
    if (TIFFGetFieldDefaulted(tiff, TIFFTAG_EXTRASAMPLES, &count, &kinds) == 0)
        return false;
    for (std::uint16_t i = 0; i < count; ++i) {
        if (kinds[i] == EXTRASAMPLE_ASSOCALPHA || kinds[i] == EXTRASAMPLE_UNASSALPHA)
            return true;
    }
    return false;
}

std::optional<double> resolutionIn(TIFF *tiff)
{
    float resolution = 0;
    const auto unit = tiffField<std::uint16_t>(tiff, TIFFTAG_RESOLUTIONUNIT, RESUNIT_INCH);
    if (unit == RESUNIT_NONE || TIFFGetField(tiff, TIFFTAG_XRESOLUTION, &resolution) == 0)
        return std::nullopt;
    return unit == RESUNIT_CENTIMETER ? double(resolution) * kCentimetresPerInch : double(resolution);
}

} // namespace

std::optional<ImageFacts> readTiffFacts(ByteSource &source)
{
    ByteReader reader(source);
    const auto opened = openedTiff(reader);
    TIFF *const tiff = opened.get();
    if (!tiff || isCameraRaw(tiff))
        return std::nullopt;
    const auto photometric = tiffField<std::uint16_t>(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_RGB);
    ImageFacts facts;
    facts.format = "TIFF";
    facts.width = tiffField<std::uint32_t>(tiff, TIFFTAG_IMAGEWIDTH, 0);
    facts.height = tiffField<std::uint32_t>(tiff, TIFFTAG_IMAGELENGTH, 0);
    facts.model = modelOf(photometric);
    facts.bitDepth = photometric == PHOTOMETRIC_PALETTE ? 8 : tiffField<std::uint16_t>(tiff, TIFFTAG_BITSPERSAMPLE, 1);
    facts.hasAlpha = hasAlpha(tiff);
    facts.dpi = resolutionIn(tiff);
    std::uint32_t size = 0;
    const std::uint8_t *icc = nullptr;
    if (TIFFGetField(tiff, TIFFTAG_ICCPROFILE, &size, &icc) != 0)
        facts.icc.assign(icc, icc + size);
    return facts;
}

} // namespace ostrelle
