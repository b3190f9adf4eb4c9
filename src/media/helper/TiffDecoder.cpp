#include "media_helper/ByteSource.h"
#include "media_helper/Decoders.h"
#include "media_helper/PictureBuilder.h"
#include "media_helper/TiffDirectory.h"
#include "media_helper/TiffReader.h"

#include <algorithm>
#include <utility>

namespace ostrelle {
namespace {

PixelLayout layoutOf(TIFF *tiff)
{
    std::uint16_t count = 0;
    const std::uint16_t *kinds = nullptr;
    const bool hasExtra = TIFFGetFieldDefaulted(tiff, TIFFTAG_EXTRASAMPLES, &count, &kinds) != 0 && count > 0;
    // The library multiplies by alpha by itself.
    return hasExtra ? PixelLayout::PremultipliedRgba : PixelLayout::Rgba;
}

/// A profile of the channels as they come out: a printer's inks have become red, green and blue by then.
std::vector<std::uint8_t> iccIn(TIFF *tiff)
{
    std::uint32_t size = 0;
    const std::uint8_t *bytes = nullptr;
    const auto photometric = tiffField<std::uint16_t>(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_RGB);
    if (photometric == PHOTOMETRIC_SEPARATED || TIFFGetField(tiff, TIFFTAG_ICCPROFILE, &size, &bytes) == 0)
        return {};
    return {bytes, bytes + size};
}

/// As many rows as are stored together, so that none is decoded twice.
std::uint32_t bandHeight(TIFF *tiff, std::uint32_t height)
{
    const auto rows = TIFFIsTiled(tiff) != 0 ? tiffField<std::uint32_t>(tiff, TIFFTAG_TILELENGTH, height)
                                             : tiffField<std::uint32_t>(tiff, TIFFTAG_ROWSPERSTRIP, height);
    return std::clamp<std::uint32_t>(rows, 1, height);
}

HelperStatus deliverRows(TIFFRGBAImage &image, std::uint32_t band, PictureBuilder &builder)
{
    const std::uint32_t width = image.width;
    const std::uint32_t height = image.height;
    std::vector<std::uint32_t> pixels(std::size_t(width) * band);
    for (std::uint32_t top = 0; top < height; top += band) {
        const std::uint32_t rows = std::min(band, height - top);
        image.row_offset = static_cast<int>(top);
        if (TIFFRGBAImageGet(&image, pixels.data(), width, rows) == 0)
            return HelperStatus::Broken;
        for (std::uint32_t row = 0; row < rows; ++row) {
            std::uint32_t *line = pixels.data() + std::size_t(row) * width;
            // The library's pixels are numbers, ours are bytes: red is the lowest of both on this kind of machine.
            builder.addRow(reinterpret_cast<const std::uint8_t *>(line));
        }
    }
    return HelperStatus::Done;
}

HelperStatus decode(TIFF *tiff, PictureBuilder &builder)
{
    PictureFacts facts;
    const auto width = tiffField<std::uint32_t>(tiff, TIFFTAG_IMAGEWIDTH, 0);
    const auto height = tiffField<std::uint32_t>(tiff, TIFFTAG_IMAGELENGTH, 0);
    facts.full = facts.decoded = {static_cast<int>(std::min<std::uint32_t>(width, 1U << 30U)),
                                  static_cast<int>(std::min<std::uint32_t>(height, 1U << 30U))};
    facts.layout = layoutOf(tiff);
    facts.icc = iccIn(tiff);
    const auto orientation = tiffField<std::uint16_t>(tiff, TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT);
    facts.orientation = orientation;
    if (!builder.begin(std::move(facts)))
        return builder.isTooLarge() ? HelperStatus::TooLarge : HelperStatus::Broken;
    const std::uint32_t band = bandHeight(tiff, height);
    if (std::int64_t(width) * band > kWholePicturePixels / 2)
        return HelperStatus::TooLarge;
    TIFFRGBAImage image{};
    char message[1024] = {};
    if (TIFFRGBAImageOK(tiff, message) == 0 || TIFFRGBAImageBegin(&image, tiff, 0, message) == 0)
        return HelperStatus::Unsupported;
    // Rows as they are stored; the builder turns the picture.
    image.req_orientation = orientation;
    const HelperStatus status = deliverRows(image, band, builder);
    TIFFRGBAImageEnd(&image);
    return status;
}

} // namespace

HelperStatus decodeTiff(ByteSource &source, PictureBuilder &builder)
{
    const auto directory = TiffDirectory::first(source);
    return directory && directory->isLikeCameraRaw() ? HelperStatus::Declined : decodeAnyTiff(source, builder);
}

HelperStatus decodeAnyTiff(ByteSource &source, PictureBuilder &builder)
{
    ByteReader reader(source);
    const auto tiff = openedTiff(reader);
    // Some cameras leave out of the first directory what the library wants in it.
    return tiff ? decode(tiff.get(), builder) : HelperStatus::Declined;
}

} // namespace ostrelle
