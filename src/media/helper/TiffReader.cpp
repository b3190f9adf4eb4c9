#include "media_helper/TiffReader.h"

#include <cstdio>

namespace ostrelle {
namespace {

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

} // namespace

std::unique_ptr<TIFF, CloseTiff> openedTiff(ByteReader &reader)
{
    TIFFSetErrorHandler(nullptr);
    TIFFSetWarningHandler(nullptr);
    // "m": the library must not map the file by itself.
    return std::unique_ptr<TIFF, CloseTiff>(TIFFClientOpen("picture", "rm", &reader, readBytes, writeBytes, seekTo,
                                                           closeNothing, sizeOf, nullptr, nullptr));
}

} // namespace ostrelle
