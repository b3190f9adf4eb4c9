#include "media_helper/SourceViews.h"

#include <algorithm>

namespace ostrelle {

PartialSource::PartialSource(ByteSource &whole, std::uint64_t begin, std::uint64_t end)
    : m_whole(whole)
    , m_begin(std::min(begin, whole.size()))
    , m_end(std::clamp(end, m_begin, whole.size()))
{
}

std::size_t PartialSource::readAt(std::uint64_t offset, std::span<std::uint8_t> buffer)
{
    if (offset >= size())
        return 0;
    return m_whole.readAt(m_begin + offset, buffer.first(std::min<std::uint64_t>(buffer.size(), size() - offset)));
}

std::size_t MeteredSource::readAt(std::uint64_t offset, std::span<std::uint8_t> buffer)
{
    const std::uint64_t jump = offset == m_position ? 0 : kJumpCost;
    m_isExhausted = m_isExhausted || m_budget < jump + buffer.size();
    if (m_isExhausted)
        return 0;
    const std::size_t count = m_whole.readAt(offset, buffer);
    m_budget -= jump + count;
    m_position = offset + count;
    return count;
}

} // namespace ostrelle
