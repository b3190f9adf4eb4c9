#include "media_helper/SoundFile.h"

#include <cstdio>

namespace ostrelle {
namespace {

ByteReader &readerOf(void *reader)
{
    return *static_cast<ByteReader *>(reader);
}

sf_count_t lengthOf(void *reader)
{
    return static_cast<sf_count_t>(readerOf(reader).source().size());
}

sf_count_t seekIn(sf_count_t offset, int whence, void *opaque)
{
    ByteReader &reader = readerOf(opaque);
    sf_count_t begin = 0;
    if (whence == SEEK_CUR)
        begin = static_cast<sf_count_t>(reader.position());
    else if (whence == SEEK_END)
        begin = lengthOf(opaque);
    sf_count_t place = 0;
    if (__builtin_add_overflow(begin, offset, &place) || place < 0)
        return -1;
    reader.seek(static_cast<std::uint64_t>(place));
    return place;
}

sf_count_t readFrom(void *bytes, sf_count_t count, void *reader)
{
    if (count <= 0)
        return 0;
    return static_cast<sf_count_t>(
        readerOf(reader).read({static_cast<std::uint8_t *>(bytes), static_cast<std::size_t>(count)}));
}

sf_count_t writeNothing(const void *, sf_count_t, void *)
{
    return 0;
}

sf_count_t positionIn(void *reader)
{
    return static_cast<sf_count_t>(readerOf(reader).position());
}

} // namespace

SoundFile openSoundFile(ByteReader &reader, SF_INFO &info)
{
    SF_VIRTUAL_IO input{lengthOf, seekIn, readFrom, writeNothing, positionIn};
    info = {};
    return SoundFile(sf_open_virtual(&input, SFM_READ, &info, &reader));
}

} // namespace ostrelle
