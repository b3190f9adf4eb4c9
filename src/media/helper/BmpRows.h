#pragma once

#include "media_helper/BmpHeader.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace ostrelle {

class ByteSource;

/// The rows of an uncompressed Windows bitmap as RGBA.
class BmpRows
{
public:
    /// `headerOffset` and `pixelOffset` are places in the source.
    BmpRows(ByteSource &source, const BmpHeader &header, std::uint64_t headerOffset, std::uint64_t pixelOffset);

    /// Row `y` counted from the top, until the next call; null when the source ends before it.
    const std::uint8_t *row(int y);
    /// How many bytes all rows take in the source.
    std::uint64_t byteSize() const { return m_stride * static_cast<std::uint64_t>(m_header.height); }
    /// Some pixel so far had an alpha other than zero; the fourth byte of 32 bits is often left zero and means nothing.
    bool hasUsedAlpha() const { return m_hasUsedAlpha; }

private:
    void unpackIndexed();
    void unpackMasked();
    void unpackTrueColour();

    ByteSource &m_source;
    const BmpHeader m_header;
    const std::uint64_t m_pixelOffset;
    const std::uint64_t m_stride;
    bool m_hasUsedAlpha = false;
    std::array<std::array<std::uint8_t, 3>, 256> m_palette{};
    std::vector<std::uint8_t> m_stored;
    std::vector<std::uint8_t> m_rgba;
};

} // namespace ostrelle
