#pragma once

#include "media_helper/ByteSource.h"

#include <libraw/libraw.h>

namespace ostrelle {

/// A source as LibRaw reads it; `source` outlives it.
class RawStream final : public LibRaw_abstract_datastream
{
public:
    explicit RawStream(ByteSource &source)
        : m_bytes(source)
    {
    }

    int valid() override { return 1; }
    int read(void *buffer, std::size_t size, std::size_t count) override;
    int seek(INT64 offset, int origin) override;
    INT64 tell() override { return static_cast<INT64>(m_bytes.position()); }
    INT64 size() override { return static_cast<INT64>(m_bytes.source().size()); }
    int get_char() override;
    char *gets(char *buffer, int size) override;
    int scanf_one(const char *format, void *value) override;
    int eof() override { return tell() >= size() ? 1 : 0; }
    void *make_jas_stream() override { return nullptr; }

private:
    ByteReader m_bytes;
};

} // namespace ostrelle
