#pragma once

#include "media_helper/ByteSource.h"

#include <cstdint>
#include <span>
#include <vector>

#include <png.h>

namespace ostrelle {

/// libpng reading from a source. Every other call of the library that can fail has to stand in a function that sets
/// png_jmpbuf() first and in which nothing has a destructor: an error jumps out of it.
struct PngReader
{
    enum class Pixels {
        Unread,    ///< a file that ends or is damaged behind its dimensions has a header as well
        EightBits, ///< rows will be read, as gray or RGB of eight bits, with or without alpha
    };

    explicit PngReader(ByteSource &source);
    PngReader(const PngReader &) = delete;
    PngReader &operator=(const PngReader &) = delete;
    ~PngReader();

    /// Up to the begin of the picture; false when there is none.
    bool readHeader(Pixels pixels);
    /// The embedded profile, empty when there is none; after readHeader().
    std::vector<std::uint8_t> icc() const;
    /// What a camera wrote, empty when there is nothing; after readHeader().
    std::span<const std::uint8_t> exif() const;

    png_structp png = nullptr;
    png_infop info = nullptr;
    bool isInterlaced = false; ///< known when rows will be read

private:
    ByteReader m_bytes;
};

} // namespace ostrelle
