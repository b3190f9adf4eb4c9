#pragma once

#include <cstdint>
#include <optional>
#include <span>

namespace ostrelle {

/// What pictures of several kinds carry along (Exif 2.32), as far as it is asked for here.
struct ExifFacts
{
    int orientation = 1;       ///< 1 is upright, 2 to 8 are the mirrored and turned ways to store a picture
    std::optional<double> dpi; ///< horizontal, dots per inch
};

/// `exif` is a TIFF structure, with or without the six bytes "Exif\0\0" before it. What is damaged is not told.
ExifFacts exifFacts(std::span<const std::uint8_t> exif);

} // namespace ostrelle
