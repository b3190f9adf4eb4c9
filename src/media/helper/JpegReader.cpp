#include "media_helper/JpegReader.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>

namespace ostrelle {
namespace {

using namespace std::literals;

constexpr int kExifMarker = JPEG_APP0 + 1;
constexpr int kIccMarker = JPEG_APP0 + 2;
constexpr unsigned kLongestMarker = 0xffff;

JpegReader &readerOf(void *clientData)
{
    return *static_cast<JpegReader *>(clientData);
}

[[noreturn]] void fail(j_common_ptr info)
{
    // NOLINTNEXTLINE(modernize-avoid-setjmp-longjmp,cert-err52-cpp): libjpeg's protocol
    std::longjmp(readerOf(info->client_data).failed, 1);
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
    JpegReader &reader = readerOf(info->client_data);
    std::size_t count = reader.bytes.read(reader.buffer);
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
    JpegReader &reader = readerOf(info->client_data);
    const std::size_t wanted = count > 0 ? static_cast<std::size_t>(count) : 0;
    const std::size_t buffered = std::min(wanted, reader.input.bytes_in_buffer);
    reader.input.next_input_byte += buffered;
    reader.input.bytes_in_buffer -= buffered;
    reader.bytes.seek(reader.bytes.position() + (wanted - buffered));
}

bool readIcc(JpegReader &reader, JOCTET **bytes, unsigned *size)
{
    if (setjmp(reader.failed) != 0) // NOLINT(modernize-avoid-setjmp-longjmp,cert-err52-cpp): libjpeg's protocol
        return false;
    return jpeg_read_icc_profile(&reader.info, bytes, size) != 0;
}

} // namespace

JpegReader::JpegReader(ByteSource &source)
    : bytes(source)
{
    info.client_data = this;
    info.err = jpeg_std_error(&errors);
    errors.error_exit = fail;
    errors.output_message = ignoreMessage;
    input.init_source = ignoreSource;
    input.fill_input_buffer = fill;
    input.skip_input_data = skip;
    input.resync_to_restart = jpeg_resync_to_restart;
    input.term_source = ignoreSource;
}

JpegReader::~JpegReader()
{
    jpeg_destroy_decompress(&info);
}

bool JpegReader::readHeader()
{
    if (setjmp(failed) != 0) // NOLINT(modernize-avoid-setjmp-longjmp,cert-err52-cpp): libjpeg's protocol
        return false;
    jpeg_create_decompress(&info);
    info.client_data = this;
    info.src = &input;
    jpeg_save_markers(&info, kExifMarker, kLongestMarker);
    jpeg_save_markers(&info, kIccMarker, kLongestMarker);
    return jpeg_read_header(&info, TRUE) == JPEG_HEADER_OK;
}

std::vector<std::uint8_t> JpegReader::icc()
{
    JOCTET *found = nullptr;
    unsigned size = 0;
    if (!readIcc(*this, &found, &size))
        return {};
    std::vector<std::uint8_t> profile(found, found + size);
    std::free(found);
    return profile;
}

std::span<const std::uint8_t> JpegReader::exif() const
{
    for (jpeg_saved_marker_ptr marker = info.marker_list; marker; marker = marker->next) {
        const std::string_view text(reinterpret_cast<const char *>(marker->data), marker->data_length);
        if (marker->marker == kExifMarker && text.starts_with("Exif\0"sv))
            return {marker->data, marker->data_length};
    }
    return {};
}

} // namespace ostrelle
