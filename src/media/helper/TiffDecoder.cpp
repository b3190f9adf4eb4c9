#include "media_helper/ByteSource.h"
#include "media_helper/Decoders.h"
#include "media_helper/PictureBuilder.h"

#include <tiffio.h>

#include <algorithm>
#include <memory>
#include <utility>

namespace ostrelle {
namespace {

struct CloseTiff
{
    void operator()(TIFF *tiff) const { TIFFClose(tiff); }
};

ByteReader &readerOf(thandle_t handle)
{
    return *static_cast<ByteReader *>(handle);
}

tmsize_t readBytes(thandle_t handle, void *data, tmsize_t size)
{
    return static_cast<tmsize_t>(
        readerOf(handle).read({static_cast<std::uint8_t *>(data), static_cast<std::size_t>(size)}));
}

tmsize_t writeBytes(thandle_t, void *, tmsize_t)
{
    return -1;
}

toff_t seekTo(thandle_t handle, toff_t offset, int whence)
{
    ByteReader &reader = readerOf(handle);
    if (whence == SEEK_CUR)
        offset += reader.position();
    else if (whence == SEEK_END)
        offset += reader.source().size();
    reader.seek(offset);
    return offset;
}

int closeNothing(thandle_t)
{
    return 0;
}

toff_t sizeOf(thandle_t handle)
{
    return readerOf(handle).source().size();
}

template <typename Value>
Value field(TIFF *tiff, ttag_t tag, Value otherwise)
{
    Value value = otherwise;
    return TIFFGetFieldDefaulted(tiff, tag, &value) != 0 ? value : otherwise;
}

/// What cameras write: a small picture first, and the sensor's own data in directories below it.
bool isCameraRaw(TIFF *tiff)
{
    std::uint16_t count = 0;
    const void *value = nullptr;
    if (TIFFGetField(tiff, TIFFTAG_DNGVERSION, &value) != 0)
        return true;
    const char *make = nullptr;
    return TIFFGetField(tiff, TIFFTAG_SUBIFD, &count, &value) != 0 && TIFFGetField(tiff, TIFFTAG_MAKE, &make) != 0;
}

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
    const auto photometric = field<std::uint16_t>(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_RGB);
    if (photometric == PHOTOMETRIC_SEPARATED || TIFFGetField(tiff, TIFFTAG_ICCPROFILE, &size, &bytes) == 0)
        return {};
    return {bytes, bytes + size};
}

/// As many rows as are stored together, so that none is decoded twice.
std::uint32_t bandHeight(TIFF *tiff, std::uint32_t height)
{
    const auto rows = TIFFIsTiled(tiff) != 0 ? field<std::uint32_t>(tiff, TIFFTAG_TILELENGTH, height)
                                             : field<std::uint32_t>(tiff, TIFFTAG_ROWSPERSTRIP, height);
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
    const auto width = field<std::uint32_t>(tiff, TIFFTAG_IMAGEWIDTH, 0);
    const auto height = field<std::uint32_t>(tiff, TIFFTAG_IMAGELENGTH, 0);
    facts.full = facts.decoded = {static_cast<int>(std::min<std::uint32_t>(width, 1U << 30U)),
                                  static_cast<int>(std::min<std::uint32_t>(height, 1U << 30U))};
    facts.layout = layoutOf(tiff);
    facts.icc = iccIn(tiff);
    const auto orientation = field<std::uint16_t>(tiff, TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT);
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
    TIFFSetErrorHandler(nullptr);
    TIFFSetWarningHandler(nullptr);
    ByteReader reader(source);
    // "m": the library must not map the file by itself.
    const std::unique_ptr<TIFF, CloseTiff> tiff(TIFFClientOpen("picture", "rm", &reader, readBytes, writeBytes, seekTo,
                                                               closeNothing, sizeOf, nullptr, nullptr));
    // Some cameras leave out of the first directory what the library wants in it.
    if (!tiff || isCameraRaw(tiff.get()))
        return HelperStatus::Declined;
    return decode(tiff.get(), builder);
}

} // namespace ostrelle
