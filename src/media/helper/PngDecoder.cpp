#include "media_helper/ByteSource.h"
#include "media_helper/Decoders.h"
#include "media_helper/Orientation.h"
#include "media_helper/PictureBuilder.h"

#include <png.h>

#include <csetjmp>
#include <utility>

namespace ostrelle {
namespace {

struct Reader
{
    png_structp png = nullptr;
    png_infop info = nullptr;
    PixelSize size;
    bool isInterlaced = false;
    std::vector<std::uint8_t> rows; ///< one, or all of an interlaced picture
    std::size_t stride = 0;
};

void readBytes(png_structp png, png_bytep data, std::size_t size)
{
    auto &bytes = *static_cast<ByteReader *>(png_get_io_ptr(png));
    if (bytes.read({data, size}) != size)
        png_error(png, "ends too early");
}

[[noreturn]] void leave(png_structp png, png_const_charp)
{
    png_longjmp(png, 1);
}

void ignore(png_structp, png_const_charp)
{
}

/// Nothing in these functions has a destructor: an error of libpng jumps out of them.
bool readHeader(Reader &reader)
{
    png_structp png = reader.png;
    if (setjmp(png_jmpbuf(png)) != 0) // NOLINT(modernize-avoid-setjmp-longjmp,cert-err52-cpp): libpng's own protocol
        return false;
    // Checksums tell nothing about a picture that the eye does not, and cost a tenth of the time.
    png_set_crc_action(png, PNG_CRC_QUIET_USE, PNG_CRC_QUIET_USE);
    png_set_option(png, PNG_IGNORE_ADLER32, PNG_OPTION_ON);
    png_set_user_limits(png, 65535, 65535);
    png_read_info(png, reader.info);
    png_set_expand(png);
    png_set_scale_16(png);
    reader.isInterlaced = png_set_interlace_handling(png) > 1;
    png_read_update_info(png, reader.info);
    reader.size = {static_cast<int>(png_get_image_width(png, reader.info)),
                   static_cast<int>(png_get_image_height(png, reader.info))};
    reader.stride = png_get_rowbytes(png, reader.info);
    return true;
}

bool readRows(const Reader &reader, std::uint8_t *rows, PictureBuilder &builder)
{
    if (setjmp(png_jmpbuf(reader.png)) != 0) // NOLINT(modernize-avoid-setjmp-longjmp,cert-err52-cpp): libpng's protocol
        return false;
    const std::size_t height = static_cast<std::size_t>(reader.size.height);
    const int passes = reader.isInterlaced ? PNG_INTERLACE_ADAM7_PASSES : 1;
    for (int pass = 0; pass < passes; ++pass) {
        for (std::size_t row = 0; row < height; ++row) {
            std::uint8_t *place = reader.isInterlaced ? rows + row * reader.stride : rows;
            png_read_row(reader.png, place, nullptr);
            if (pass == passes - 1)
                builder.addRow(place);
        }
    }
    return true;
}

std::optional<PixelLayout> layoutOf(const Reader &reader)
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

std::vector<std::uint8_t> iccIn(const Reader &reader)
{
    png_charp name = nullptr;
    png_bytep bytes = nullptr;
    png_uint_32 size = 0;
    int compression = 0;
    if (png_get_iCCP(reader.png, reader.info, &name, &compression, &bytes, &size) == 0)
        return {};
    return {bytes, bytes + size};
}

int orientationIn(const Reader &reader)
{
    png_uint_32 size = 0;
    png_bytep bytes = nullptr;
    return png_get_eXIf_1(reader.png, reader.info, &size, &bytes) != 0 ? exifOrientation({bytes, size}) : 1;
}

HelperStatus decode(Reader &reader, PictureBuilder &builder)
{
    if (!readHeader(reader))
        return HelperStatus::Broken;
    const auto layout = layoutOf(reader);
    if (!layout)
        return HelperStatus::Broken;
    PictureFacts facts;
    facts.full = facts.decoded = reader.size;
    facts.layout = *layout;
    facts.orientation = orientationIn(reader);
    facts.icc = iccIn(reader);
    if (!builder.begin(std::move(facts)))
        return builder.isTooLarge() ? HelperStatus::TooLarge : HelperStatus::Broken;
    if (reader.isInterlaced && std::int64_t(reader.size.width) * reader.size.height > kWholePicturePixels)
        return HelperStatus::TooLarge;
    reader.rows.resize(reader.stride * static_cast<std::size_t>(reader.isInterlaced ? reader.size.height : 1));
    return readRows(reader, reader.rows.data(), builder) ? HelperStatus::Done : HelperStatus::Broken;
}

} // namespace

HelperStatus decodePng(ByteSource &source, PictureBuilder &builder)
{
    ByteReader bytes(source);
    Reader reader;
    reader.png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, leave, ignore);
    reader.info = reader.png ? png_create_info_struct(reader.png) : nullptr;
    HelperStatus status = HelperStatus::OutOfMemory;
    if (reader.info) {
        png_set_read_fn(reader.png, &bytes, readBytes);
        status = decode(reader, builder);
    }
    png_destroy_read_struct(&reader.png, &reader.info, nullptr);
    return status;
}

} // namespace ostrelle
