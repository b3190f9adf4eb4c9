#include "media_helper/BmpRows.h"

#include "media_helper/ByteSource.h"

#include <algorithm>
#include <bit>

namespace ostrelle {
namespace {

/// Wider pictures are refused before any row is asked for.
constexpr std::uint64_t kWidestRow = 65535;

std::uint64_t strideOf(const BmpHeader &header)
{
    const std::uint64_t bits =
        static_cast<std::uint64_t>(header.width) * static_cast<std::uint64_t>(header.bitsPerPixel);
    return (bits + 31) / 32 * 4;
}

std::size_t widthOf(const BmpHeader &header)
{
    return static_cast<std::uint64_t>(header.width) <= kWidestRow ? static_cast<std::size_t>(header.width) : 0;
}

/// The bits of `mask` in `pixel`, spread to eight.
std::uint8_t channel(std::uint32_t pixel, std::uint32_t mask, std::uint8_t otherwise)
{
    if (mask == 0)
        return otherwise;
    const int shift = std::countr_zero(mask);
    const std::uint64_t greatest = mask >> shift;
    return static_cast<std::uint8_t>((std::uint64_t((pixel & mask) >> shift) * 255 + greatest / 2) / greatest);
}

} // namespace

BmpRows::BmpRows(ByteSource &source, const BmpHeader &header, std::uint64_t headerOffset, std::uint64_t pixelOffset)
    : m_source(source)
    , m_header(header)
    , m_pixelOffset(pixelOffset)
    , m_stride(strideOf(header))
    , m_stored(widthOf(header) > 0 ? m_stride : 0)
    , m_rgba(4 * widthOf(header))
{
    if (header.bitsPerPixel > 8)
        return;
    const std::size_t entry = static_cast<std::size_t>(header.paletteEntrySize);
    std::vector<std::uint8_t> bytes(entry * static_cast<std::size_t>(header.paletteColours));
    bytes.resize(source.readAt(headerOffset + header.paletteOffset, bytes));
    for (std::size_t i = 0; (i + 1) * entry <= bytes.size() && i < m_palette.size(); ++i)
        m_palette[i] = {bytes[i * entry + 2], bytes[i * entry + 1], bytes[i * entry]};
}

const std::uint8_t *BmpRows::row(int y)
{
    const int stored = m_header.isTopDown ? y : m_header.height - 1 - y;
    const std::uint64_t offset = m_pixelOffset + static_cast<std::uint64_t>(stored) * m_stride;
    if (m_stored.empty() || m_source.readAt(offset, m_stored) != m_stored.size())
        return nullptr;
    if (m_header.bitsPerPixel <= 8)
        unpackIndexed();
    else if (m_header.bitsPerPixel == 24)
        unpackTrueColour();
    else
        unpackMasked();
    return m_rgba.data();
}

void BmpRows::unpackIndexed()
{
    const std::size_t bits = static_cast<std::size_t>(m_header.bitsPerPixel);
    const std::size_t perByte = 8 / bits;
    for (std::size_t x = 0; x < m_rgba.size() / 4; ++x) {
        const std::size_t shift = 8 - bits * (x % perByte + 1);
        const auto &colour = m_palette[std::size_t(m_stored[x / perByte]) >> shift & ((std::size_t(1) << bits) - 1)];
        std::copy(colour.begin(), colour.end(), m_rgba.begin() + static_cast<std::ptrdiff_t>(4 * x));
        m_rgba[4 * x + 3] = 0xff;
    }
}

void BmpRows::unpackTrueColour()
{
    for (std::size_t x = 0; x < m_rgba.size() / 4; ++x) {
        for (std::size_t c = 0; c < 3; ++c)
            m_rgba[4 * x + c] = m_stored[3 * x + 2 - c];
        m_rgba[4 * x + 3] = 0xff;
    }
}

void BmpRows::unpackMasked()
{
    const std::size_t size = static_cast<std::size_t>(m_header.bitsPerPixel) / 8;
    for (std::size_t x = 0; x < m_rgba.size() / 4; ++x) {
        std::uint32_t pixel = 0;
        for (std::size_t i = 0; i < size; ++i)
            pixel |= std::uint32_t(m_stored[x * size + i]) << (8 * i);
        for (std::size_t c = 0; c < 3; ++c)
            m_rgba[4 * x + c] = channel(pixel, m_header.masks[c], 0);
        m_rgba[4 * x + 3] = channel(pixel, m_header.masks[3], 0xff);
        m_hasUsedAlpha = m_hasUsedAlpha || (m_header.masks[3] != 0 && m_rgba[4 * x + 3] != 0);
    }
}

} // namespace ostrelle
