#include "media_helper/RowShrinker.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

namespace ostrelle {
namespace {

/// As many rows of 255 as a sum of 16 bits holds.
constexpr int kMostWholeRows = 257;

/// The rounded product of two fractions of 255.
std::uint8_t timesAlpha(unsigned value, unsigned alpha)
{
    const unsigned product = value * alpha + 128;
    return static_cast<std::uint8_t>((product + (product >> 8)) >> 8);
}

} // namespace

RowShrinker::RowShrinker(const PixelArea &area, PixelSize target, PixelLayout layout)
    : m_area(area)
    , m_target(target)
    , m_layout(layout)
    , m_channels(channelsOf(layout))
    , m_wholeSums(static_cast<std::size_t>(area.size.width * m_channels))
    , m_sums(m_wholeSums.size())
    , m_premultiplied(layout == PixelLayout::Rgba || layout == PixelLayout::GrayAlpha ? m_wholeSums.size() : 0)
{
    m_result.size = target;
    m_result.layout = layout == PixelLayout::PremultipliedRgba ? PixelLayout::Rgba : layout;
    m_result.bytes.resize(m_result.stride() * static_cast<std::size_t>(target.height));
}

/// In units in which a source row is `m_target.height` high, a target row is `m_area.size.height` high.
void RowShrinker::add(const std::uint8_t *row)
{
    const int y = m_sourceRow++ - m_area.top;
    if (y < 0 || y >= m_area.size.height)
        return;
    const std::uint8_t *values = row + m_area.left * m_channels;
    if (m_target == m_area.size && m_layout != PixelLayout::PremultipliedRgba) {
        std::memcpy(m_result.bytes.data() + m_result.stride() * static_cast<std::size_t>(y), values, m_result.stride());
        return;
    }
    if (!m_premultiplied.empty())
        values = premultiplied(values);

    const std::int64_t unit = m_target.height;
    const std::int64_t begin = y * unit;
    const std::int64_t end = begin + unit;
    const std::int64_t rowEnd = std::int64_t(m_targetRow + 1) * m_area.size.height;
    const std::int64_t rowBegin = rowEnd - m_area.size.height;
    if (begin >= rowBegin && end <= rowEnd)
        addWhole(values);
    else
        addWeighted(values, static_cast<std::uint32_t>(rowEnd - begin));
    if (end < rowEnd)
        return;
    finishRow();
    if (end > rowEnd)
        addWeighted(values, static_cast<std::uint32_t>(end - rowEnd));
}

void RowShrinker::addWeighted(const std::uint8_t *values, std::uint32_t weight)
{
    std::uint32_t *sums = m_sums.data();
    const std::size_t count = m_sums.size();
    for (std::size_t i = 0; i < count; ++i)
        sums[i] += values[i] * weight;
}

void RowShrinker::addWhole(const std::uint8_t *values)
{
    std::uint16_t *sums = m_wholeSums.data();
    const std::size_t count = m_wholeSums.size();
    for (std::size_t i = 0; i < count; ++i)
        sums[i] = static_cast<std::uint16_t>(sums[i] + values[i]);
    if (++m_wholeRows == kMostWholeRows)
        foldWholeRows();
}

void RowShrinker::foldWholeRows()
{
    const auto weight = static_cast<std::uint32_t>(m_target.height);
    for (std::size_t i = 0; i < m_sums.size(); ++i)
        m_sums[i] += m_wholeSums[i] * weight;
    std::fill(m_wholeSums.begin(), m_wholeSums.end(), std::uint16_t(0));
    m_wholeRows = 0;
}

/// Sideways the same is done to the sums: at most 255 * 65535 * 65535, so they need 64 bits.
void RowShrinker::finishRow()
{
    foldWholeRows();
    const std::uint64_t width = static_cast<std::uint64_t>(m_area.size.width);
    const std::uint64_t unit = static_cast<std::uint64_t>(m_target.width);
    const std::uint64_t whole = width * static_cast<std::uint64_t>(m_area.size.height);
    const int channels = m_channels;
    std::uint8_t *out = m_result.bytes.data() + m_result.stride() * static_cast<std::size_t>(m_targetRow);
    for (std::uint64_t column = 0; column < unit; ++column) {
        const std::uint64_t from = column * width;
        const std::uint64_t to = from + width;
        std::array<std::uint64_t, 4> sums{};
        for (std::uint64_t x = from / unit; x * unit < to; ++x) {
            const std::uint64_t weight = std::min(to, (x + 1) * unit) - std::max(from, x * unit);
            for (int c = 0; c < channels; ++c)
                sums[static_cast<std::size_t>(c)] +=
                    m_sums[x * static_cast<std::uint64_t>(channels) + static_cast<std::uint64_t>(c)] * weight;
        }
        const std::uint64_t alpha = hasAlpha(m_layout) ? sums[static_cast<std::size_t>(channels - 1)] : 0;
        for (int c = 0; c < channels; ++c) {
            const std::uint64_t sum = sums[static_cast<std::size_t>(c)];
            std::uint64_t value = (sum + whole / 2) / whole;
            if (hasAlpha(m_layout) && c < channels - 1)
                value = alpha > 0 ? std::min<std::uint64_t>((sum * 255 + alpha / 2) / alpha, 255) : 0;
            *out++ = static_cast<std::uint8_t>(value);
        }
    }
    std::fill(m_sums.begin(), m_sums.end(), 0U);
    ++m_targetRow;
}

const std::uint8_t *RowShrinker::premultiplied(const std::uint8_t *row)
{
    const std::size_t colours = static_cast<std::size_t>(m_channels - 1);
    for (std::size_t i = 0; i < m_premultiplied.size(); i += colours + 1) {
        const unsigned alpha = row[i + colours];
        for (std::size_t c = 0; c < colours; ++c)
            m_premultiplied[i + c] = timesAlpha(row[i + c], alpha);
        m_premultiplied[i + colours] = static_cast<std::uint8_t>(alpha);
    }
    return m_premultiplied.data();
}

Raster RowShrinker::take()
{
    return std::move(m_result);
}

} // namespace ostrelle
