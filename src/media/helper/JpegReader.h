#pragma once

#include "media_helper/ByteSource.h"

#include <array>
#include <csetjmp>
#include <cstdint>
#include <cstdio>
#include <span>
#include <vector>

#include <jpeglib.h>

namespace ostrelle {

/// libjpeg reading from a source, with what its callbacks need. Every call of the library has to stand in a function
/// that sets `failed` first and in which nothing has a destructor: an error jumps out of it.
struct JpegReader
{
    explicit JpegReader(ByteSource &source);
    JpegReader(const JpegReader &) = delete;
    JpegReader &operator=(const JpegReader &) = delete;
    ~JpegReader();

    /// Up to the begin of the picture; false when there is none.
    bool readHeader();
    /// The embedded profile, empty when there is none; after readHeader().
    std::vector<std::uint8_t> icc();
    /// What the camera wrote, empty when there is nothing; after readHeader().
    std::span<const std::uint8_t> exif() const;

    jpeg_decompress_struct info{};
    jpeg_error_mgr errors{};
    std::jmp_buf failed{};
    jpeg_source_mgr input{};
    ByteReader bytes;
    std::array<std::uint8_t, 65536> buffer{};
};

} // namespace ostrelle
