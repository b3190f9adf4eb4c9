#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace ostrelle {

struct PixelSize
{
    int width = 0;
    int height = 0;
    bool operator==(const PixelSize &) const = default;
};

/// The order and meaning of the eight-bit channels of a pixel.
enum class PixelLayout { Gray, GrayAlpha, Rgb, Rgba, PremultipliedRgba, Cmyk, InvertedCmyk };

constexpr int channelsOf(PixelLayout layout)
{
    switch (layout) {
    case PixelLayout::Gray:
        return 1;
    case PixelLayout::GrayAlpha:
        return 2;
    case PixelLayout::Rgb:
        return 3;
    default:
        return 4;
    }
}

constexpr bool hasAlpha(PixelLayout layout)
{
    return layout == PixelLayout::GrayAlpha || layout == PixelLayout::Rgba || layout == PixelLayout::PremultipliedRgba;
}

/// Pixels in memory, rows from the top without gaps.
struct Raster
{
    PixelSize size;
    PixelLayout layout = PixelLayout::Rgba;
    std::vector<std::uint8_t> bytes;

    std::size_t stride() const
    {
        return static_cast<std::size_t>(size.width) * static_cast<std::size_t>(channelsOf(layout));
    }
};

} // namespace ostrelle
