#include "media_helper/HeifReader.h"

#include <algorithm>

namespace ostrelle {
namespace {

std::int64_t position(void *reader)
{
    return static_cast<std::int64_t>(static_cast<ByteReader *>(reader)->position());
}

int read(void *data, std::size_t size, void *reader)
{
    return static_cast<ByteReader *>(reader)->read({static_cast<std::uint8_t *>(data), size}) == size ? 0 : 1;
}

int seek(std::int64_t place, void *reader)
{
    static_cast<ByteReader *>(reader)->seek(static_cast<std::uint64_t>(std::max<std::int64_t>(place, 0)));
    return 0;
}

heif_reader_grow_status grow(std::int64_t size, void *reader)
{
    const std::uint64_t end = static_cast<ByteReader *>(reader)->source().size();
    return size >= 0 && static_cast<std::uint64_t>(size) <= end ? heif_reader_grow_status_size_reached
                                                                : heif_reader_grow_status_size_beyond_eof;
}

constexpr heif_reader kReader{1, position, read, seek, grow};

} // namespace

HeifFile::HeifFile(ByteSource &source)
    : reader(source)
    , context(heif_context_alloc())
{
    heif_image_handle *found = nullptr;
    if (context && heif_context_read_from_reader(context.get(), &kReader, &reader, nullptr).code == heif_error_Ok &&
        heif_context_get_primary_image_handle(context.get(), &found).code == heif_error_Ok)
        primary.reset(found);
}

std::vector<std::uint8_t> heifIcc(const heif_image_handle *handle)
{
    std::vector<std::uint8_t> icc(heif_image_handle_get_raw_color_profile_size(handle));
    if (icc.empty() || heif_image_handle_get_raw_color_profile(handle, icc.data()).code != heif_error_Ok)
        return {};
    return icc;
}

} // namespace ostrelle
