#pragma once

#include "media_helper/Raster.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace ostrelle {

/// A part of a picture, in its pixels.
struct PixelArea
{
    int left = 0;
    int top = 0;
    PixelSize size;
};

/// Shrinks a picture while its rows arrive: each pixel of the result is the exact mean of the area that it covers, with
/// colours weighted by their alpha. Holds one row of sums, whatever the size of the source.
class RowShrinker
{
public:
    /// Sides of `area`, the part of the source that is wanted, are at most 65535; `target` is not larger than `area`.
    RowShrinker(const PixelArea &area, PixelSize target, PixelLayout layout);

    /// The next row of the source, whole, from the top.
    void add(const std::uint8_t *row);
    /// The result, alpha not premultiplied; rows that never came are transparent, or black.
    Raster take();

private:
    void addWeighted(const std::uint8_t *values, std::uint32_t weight);
    void addWhole(const std::uint8_t *values);
    void foldWholeRows();
    void finishRow();
    const std::uint8_t *premultiplied(const std::uint8_t *row);

    const PixelArea m_area;
    const PixelSize m_target;
    const PixelLayout m_layout;
    const int m_channels;
    int m_sourceRow = 0;
    int m_targetRow = 0;
    int m_wholeRows = 0;
    /// Sums of the target row in work: rows that lie within it, unweighted, and all folded together, weighted.
    std::vector<std::uint16_t> m_wholeSums;
    std::vector<std::uint32_t> m_sums;
    std::vector<std::uint8_t> m_premultiplied;
    Raster m_result;
};

} // namespace ostrelle
