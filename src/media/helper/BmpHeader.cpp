#include "media_helper/BmpHeader.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

namespace ostrelle {
namespace {

constexpr std::uint32_t kUncompressed = 0;
constexpr std::uint32_t kBitFields = 3;
constexpr std::uint32_t kAlphaBitFields = 6;
constexpr std::uint32_t kOs2Size = 12;
/// OS/2's second version has the fields of Windows' first, and may end after any of them.
constexpr std::uint32_t kShortestSize = 16;
constexpr std::uint32_t kInfoSize = 40;

std::uint32_t number(std::span<const std::uint8_t> bytes, std::size_t offset, std::size_t size)
{
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < size && offset + i < bytes.size(); ++i)
        value |= std::uint32_t(bytes[offset + i]) << (8 * i);
    return value;
}

BmpHeader os2Header(std::span<const std::uint8_t> bytes)
{
    BmpHeader header;
    header.width = static_cast<int>(number(bytes, 4, 2));
    header.height = static_cast<int>(number(bytes, 6, 2));
    header.bitsPerPixel = static_cast<int>(number(bytes, 10, 2));
    header.paletteOffset = kOs2Size;
    header.paletteEntrySize = 3;
    return header;
}

void readMasks(std::span<const std::uint8_t> bytes, std::uint32_t size, std::uint32_t compression, BmpHeader &header)
{
    if (header.bitsPerPixel == 16)
        header.masks = {0x7c00, 0x03e0, 0x001f, 0};
    else
        header.masks = {0xff0000, 0xff00, 0xff, 0};
    if (compression != kBitFields && compression != kAlphaBitFields)
        return;
    // Within the header, or right after the oldest one.
    for (std::size_t channel = 0; channel < 3; ++channel)
        header.masks[channel] = number(bytes, 40 + 4 * channel, 4);
    if (size >= 56 || compression == kAlphaBitFields)
        header.masks[3] = number(bytes, 52, 4);
    if (size == kInfoSize)
        header.paletteOffset += compression == kAlphaBitFields ? 16 : 12;
}

bool isKnownDepth(int bits)
{
    return bits == 1 || bits == 4 || bits == 8 || bits == 16 || bits == 24 || bits == 32;
}

} // namespace

std::optional<BmpHeader> parsedBmpHeader(std::span<const std::uint8_t> bytes)
{
    const std::uint32_t size = number(bytes, 0, 4);
    if (bytes.size() < kOs2Size || (size != kOs2Size && size < kShortestSize) || size > 1024)
        return std::nullopt;
    if (size < kInfoSize)
        bytes = bytes.first(std::min<std::size_t>(bytes.size(), size));
    BmpHeader header;
    if (size == kOs2Size) {
        header = os2Header(bytes);
    } else {
        const auto height = static_cast<std::int32_t>(number(bytes, 8, 4));
        if (height == std::numeric_limits<std::int32_t>::min())
            return std::nullopt;
        const std::uint32_t compression = number(bytes, 16, 4);
        header.width = static_cast<std::int32_t>(number(bytes, 4, 4));
        header.height = std::abs(height);
        header.isTopDown = height < 0;
        header.bitsPerPixel = static_cast<int>(number(bytes, 14, 2));
        header.isCompressed =
            compression != kUncompressed && compression != kBitFields && compression != kAlphaBitFields;
        header.paletteOffset = size;
        header.paletteColours = static_cast<int>(number(bytes, 32, 4) & 0xffffU);
        readMasks(bytes, size, compression, header);
    }
    if (header.bitsPerPixel <= 8 && (header.paletteColours == 0 || header.paletteColours > 256))
        header.paletteColours = 1 << header.bitsPerPixel;
    if (header.width <= 0 || header.height <= 0 || (!header.isCompressed && !isKnownDepth(header.bitsPerPixel)))
        return std::nullopt;
    return header;
}

} // namespace ostrelle
