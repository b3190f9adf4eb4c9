#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>

namespace ostrelle {

/// The header of a Windows bitmap, as far as the uncompressed kinds need it (BITMAPINFOHEADER up to BITMAPV5HEADER, and
/// OS/2's of 12 bytes).
struct BmpHeader
{
    int width = 0;
    int height = 0; ///< rows
    bool isTopDown = false;
    int bitsPerPixel = 0;
    bool isCompressed = false;
    std::array<std::uint32_t, 4> masks{}; ///< red, green, blue, alpha, of 16 and 32 bits a pixel
    std::uint32_t paletteOffset = 0;      ///< from the begin of the header
    int paletteColours = 0;
    int paletteEntrySize = 4;
};

/// How much of a bitmap parsedBmpHeader() looks at.
inline constexpr std::size_t kBmpHeaderBytes = 124;

/// `bytes` begins with the header's own size. Nothing when it makes no sense.
std::optional<BmpHeader> parsedBmpHeader(std::span<const std::uint8_t> bytes);

} // namespace ostrelle
