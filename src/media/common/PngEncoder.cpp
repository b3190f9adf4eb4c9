#include "media_common/PngEncoder.h"

#include <png.h>

#include <csetjmp>

namespace ostrelle {
namespace {

struct Output
{
    std::vector<std::uint8_t> bytes;
    std::size_t limit = 0;
};

void append(png_structp png, png_bytep data, std::size_t size)
{
    auto &output = *static_cast<Output *>(png_get_io_ptr(png));
    if (size > output.limit - output.bytes.size())
        png_error(png, "beyond the limit");
    output.bytes.insert(output.bytes.end(), data, data + size);
}

void leave(png_structp png, png_const_charp)
{
    png_longjmp(png, 1);
}

void ignore(png_structp, png_const_charp)
{
}

bool isOpaque(const PngPixels &pixels)
{
    const std::size_t count = static_cast<std::size_t>(pixels.width) * static_cast<std::size_t>(pixels.height);
    for (std::size_t pixel = 0; pixel < count; ++pixel) {
        if (pixels.rgba[4 * pixel + 3] != 0xff)
            return false;
    }
    return true;
}

/// Nothing in here has a destructor: an error of libpng jumps out of it.
bool write(png_structp png, png_infop info, const PngPixels &pixels, bool hasAlpha, int compression, png_textp texts,
           int textCount)
{
    if (setjmp(png_jmpbuf(png)) != 0) // NOLINT(modernize-avoid-setjmp-longjmp,cert-err52-cpp): libpng's own protocol
        return false;
    png_set_compression_level(png, compression);
    png_set_filter(png, PNG_FILTER_TYPE_BASE, PNG_FILTER_NONE | PNG_FILTER_SUB | PNG_FILTER_UP);
    png_set_IHDR(png, info, static_cast<png_uint_32>(pixels.width), static_cast<png_uint_32>(pixels.height), 8,
                 hasAlpha ? PNG_COLOR_TYPE_RGB_ALPHA : PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_set_sRGB_gAMA_and_cHRM(png, info, PNG_sRGB_INTENT_PERCEPTUAL);
    if (textCount > 0)
        png_set_text(png, info, texts, textCount);
    png_write_info(png, info);
    if (!hasAlpha)
        png_set_filler(png, 0, PNG_FILLER_AFTER);
    const std::size_t stride = 4 * static_cast<std::size_t>(pixels.width);
    for (int row = 0; row < pixels.height; ++row)
        png_write_row(png, pixels.rgba + static_cast<std::size_t>(row) * stride);
    png_write_end(png, info);
    return true;
}

} // namespace

std::optional<std::vector<std::uint8_t>> encodePng(const PngPixels &pixels, const PngOptions &options)
{
    Output output{{}, options.byteLimit};
    std::vector<png_text> texts;
    for (const auto &[key, value] : options.texts) {
        png_text text{};
        text.compression = PNG_TEXT_COMPRESSION_NONE;
        // libpng's interface is older than const; it copies both.
        text.key = const_cast<char *>(key.c_str());
        text.text = const_cast<char *>(value.c_str());
        text.text_length = value.size();
        texts.push_back(text);
    }
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, leave, ignore);
    png_infop info = png ? png_create_info_struct(png) : nullptr;
    bool isWritten = false;
    if (info) {
        png_set_write_fn(png, &output, append, nullptr);
        const bool hasAlpha = options.alpha == PngAlpha::Keep || !isOpaque(pixels);
        isWritten =
            write(png, info, pixels, hasAlpha, options.compression, texts.data(), static_cast<int>(texts.size()));
    }
    png_destroy_write_struct(&png, &info);
    if (!isWritten)
        return std::nullopt;
    return std::move(output.bytes);
}

} // namespace ostrelle
