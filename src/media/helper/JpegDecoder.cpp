#include "media_helper/ByteSource.h"
#include "media_helper/Decoders.h"
#include "media_helper/Orientation.h"
#include "media_helper/PictureBuilder.h"

#include <algorithm>
#include <array>
#include <csetjmp>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include <jpeglib.h>

namespace ostrelle {
namespace {

constexpr int kExifMarker = JPEG_APP0 + 1;
constexpr int kIccMarker = JPEG_APP0 + 2;
constexpr unsigned kLongestMarker = 0xffff;

/// libjpeg's structures, with what their callbacks need behind them.
struct Reader
{
    jpeg_decompress_struct info{};
    jpeg_error_mgr errors{};
    std::jmp_buf failed{};
    jpeg_source_mgr input{};
    ByteReader *bytes = nullptr;
    std::array<std::uint8_t, 65536> buffer{};
    std::vector<std::uint8_t> row;
};

Reader &readerOf(j_common_ptr info)
{
    return *static_cast<Reader *>(info->client_data);
}

Reader &readerOf(j_decompress_ptr info)
{
    return *static_cast<Reader *>(info->client_data);
}

[[noreturn]] void fail(j_common_ptr info)
{
    std::longjmp(readerOf(info).failed, 1); // NOLINT(modernize-avoid-setjmp-longjmp,cert-err52-cpp): libjpeg's protocol
}

void ignoreMessage(j_common_ptr)
{
}

void ignoreSource(j_decompress_ptr)
{
}

/// A file that ends too early is ended for libjpeg, which fills the rest of the picture.
boolean fill(j_decompress_ptr info)
{
    Reader &reader = readerOf(info);
    std::size_t count = reader.bytes->read(reader.buffer);
    if (count == 0) {
        reader.buffer[0] = 0xff;
        reader.buffer[1] = JPEG_EOI;
        count = 2;
    }
    reader.input.next_input_byte = reader.buffer.data();
    reader.input.bytes_in_buffer = count;
    return TRUE;
}

void skip(j_decompress_ptr info, long count)
{
    Reader &reader = readerOf(info);
    const std::size_t wanted = count > 0 ? static_cast<std::size_t>(count) : 0;
    const std::size_t buffered = std::min(wanted, reader.input.bytes_in_buffer);
    reader.input.next_input_byte += buffered;
    reader.input.bytes_in_buffer -= buffered;
    reader.bytes->seek(reader.bytes->position() + (wanted - buffered));
}

/// Nothing in these functions has a destructor: an error jumps out of them.
bool readHeader(Reader &reader)
{
    if (setjmp(reader.failed) != 0) // NOLINT(modernize-avoid-setjmp-longjmp,cert-err52-cpp): libjpeg's protocol
        return false;
    jpeg_create_decompress(&reader.info);
    reader.info.client_data = &reader;
    reader.info.src = &reader.input;
    jpeg_save_markers(&reader.info, kExifMarker, kLongestMarker);
    jpeg_save_markers(&reader.info, kIccMarker, kLongestMarker);
    return jpeg_read_header(&reader.info, TRUE) == JPEG_HEADER_OK;
}

bool readIcc(Reader &reader, JOCTET **bytes, unsigned *size)
{
    if (setjmp(reader.failed) != 0) // NOLINT(modernize-avoid-setjmp-longjmp,cert-err52-cpp): libjpeg's protocol
        return false;
    return jpeg_read_icc_profile(&reader.info, bytes, size) != 0;
}

bool start(Reader &reader)
{
    if (setjmp(reader.failed) != 0) // NOLINT(modernize-avoid-setjmp-longjmp,cert-err52-cpp): libjpeg's protocol
        return false;
    return jpeg_start_decompress(&reader.info) != 0;
}

bool readRows(Reader &reader, PictureBuilder &builder)
{
    if (setjmp(reader.failed) != 0) // NOLINT(modernize-avoid-setjmp-longjmp,cert-err52-cpp): libjpeg's protocol
        return false;
    while (reader.info.output_scanline < reader.info.output_height) {
        JSAMPROW row = reader.row.data();
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

int orientationIn(const jpeg_decompress_struct &info)
{
    for (jpeg_saved_marker_ptr marker = info.marker_list; marker; marker = marker->next) {
        const std::span<const std::uint8_t> bytes(marker->data, marker->data_length);
        if (marker->marker == kExifMarker && bytes.size() > 6 && bytes[0] == 'E' && bytes[1] == 'x')
            return exifOrientation(bytes);
    }
    return 1;
}

HelperStatus decode(Reader &reader, PictureBuilder &builder)
{
    if (!readHeader(reader))
        return HelperStatus::Broken;
    PictureFacts facts;
    facts.full = {static_cast<int>(reader.info.image_width), static_cast<int>(reader.info.image_height)};
    facts.orientation = orientationIn(reader.info);
    facts.layout = chooseLayout(reader.info);
    JOCTET *icc = nullptr;
    unsigned iccSize = 0;
    if (readIcc(reader, &icc, &iccSize)) {
        facts.icc.assign(icc, icc + iccSize);
        std::free(icc);
    }
    chooseScale(reader.info, builder.shrinkScale(facts.full));
    facts.decoded = scaledSize(facts.full, reader.info.scale_denom);
    const PixelSize decoded = facts.decoded;
    const int channels = channelsOf(facts.layout);
    if (!builder.begin(std::move(facts)))
        return builder.isTooLarge() ? HelperStatus::TooLarge : HelperStatus::Broken;
    if (!start(reader) || static_cast<int>(reader.info.output_width) != decoded.width ||
        static_cast<int>(reader.info.output_height) != decoded.height || reader.info.output_components != channels)
        return HelperStatus::Broken;
    reader.row.resize(static_cast<std::size_t>(decoded.width) * static_cast<std::size_t>(channels));
    return readRows(reader, builder) ? HelperStatus::Done : HelperStatus::Broken;
}

} // namespace

HelperStatus decodeJpeg(ByteSource &source, PictureBuilder &builder)
{
    ByteReader bytes(source);
    Reader reader;
    reader.bytes = &bytes;
    reader.info.client_data = &reader;
    reader.info.err = jpeg_std_error(&reader.errors);
    reader.errors.error_exit = fail;
    reader.errors.output_message = ignoreMessage;
    reader.input.init_source = ignoreSource;
    reader.input.fill_input_buffer = fill;
    reader.input.skip_input_data = skip;
    reader.input.resync_to_restart = jpeg_resync_to_restart;
    reader.input.term_source = ignoreSource;
    const HelperStatus status = decode(reader, builder);
    jpeg_destroy_decompress(&reader.info);
    return status;
}

} // namespace ostrelle
