#include "media_helper/PngReader.h"

#include <csetjmp>

namespace ostrelle {
namespace {

/// The longest side that is decoded, and the longest that the format has.
constexpr png_uint_32 kMostDecoded = 65535;
constexpr png_uint_32 kMostTold = 0x7fffffff;

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

} // namespace

PngReader::PngReader(ByteSource &source)
    : png(png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, leave, ignore))
    , info(png ? png_create_info_struct(png) : nullptr)
    , m_bytes(source)
{
    if (info)
        png_set_read_fn(png, &m_bytes, readBytes);
}

PngReader::~PngReader()
{
    png_destroy_read_struct(&png, &info, nullptr);
}

bool PngReader::readHeader(Pixels pixels)
{
    if (!info)
        return false;
    if (setjmp(png_jmpbuf(png)) != 0) // NOLINT(modernize-avoid-setjmp-longjmp,cert-err52-cpp): libpng's own protocol
        return pixels == Pixels::Unread && png_get_image_width(png, info) > 0;
    // Checksums tell nothing about a picture that the eye does not, and cost a tenth of the time.
    png_set_crc_action(png, PNG_CRC_QUIET_USE, PNG_CRC_QUIET_USE);
    png_set_option(png, PNG_IGNORE_ADLER32, PNG_OPTION_ON);
    const png_uint_32 most = pixels == Pixels::Unread ? kMostTold : kMostDecoded;
    png_set_user_limits(png, most, most);
    png_read_info(png, info);
    if (pixels == Pixels::Unread)
        return true;
    png_set_expand(png);
    png_set_scale_16(png);
    isInterlaced = png_set_interlace_handling(png) > 1;
    png_read_update_info(png, info);
    return true;
}

std::vector<std::uint8_t> PngReader::icc() const
{
    png_charp name = nullptr;
    png_bytep bytes = nullptr;
    png_uint_32 size = 0;
    int compression = 0;
    if (png_get_iCCP(png, info, &name, &compression, &bytes, &size) == 0)
        return {};
    return {bytes, bytes + size};
}

std::span<const std::uint8_t> PngReader::exif() const
{
    png_uint_32 size = 0;
    png_bytep bytes = nullptr;
    if (png_get_eXIf_1(png, info, &size, &bytes) == 0)
        return {};
    return {bytes, size};
}

} // namespace ostrelle
