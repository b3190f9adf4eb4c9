#include "media_helper/RiffChunks.h"

#include <algorithm>

namespace ostrelle {
namespace {

using namespace std::literals;

constexpr std::size_t kChunkHeader = 8;
/// The size of a chunk whose size is told elsewhere (EBU Tech 3306, RF64).
constexpr std::uint64_t kTold = 0xffffffff;

} // namespace

std::optional<RiffChunk> RiffChunks::next()
{
    std::array<std::uint8_t, kChunkHeader> header{};
    if (m_at >= m_source.size() || !readWhole(m_source, m_at, header))
        return std::nullopt;
    RiffChunk chunk;
    std::copy_n(header.begin(), chunk.letters.size(), chunk.letters.begin());
    chunk.begin = m_at + kChunkHeader;
    chunk.size = number(ByteSpan(header).subspan(4));
    if (chunk.name() == "ds64"sv) {
        std::array<std::uint8_t, 16> sizes{};
        if (readWhole(m_source, chunk.begin, sizes))
            m_dataSize = number(ByteSpan(sizes).subspan(8));
    }
    if (chunk.name() == "data"sv && chunk.size == kTold)
        chunk.size = m_dataSize;
    const std::uint64_t left = m_source.size() - chunk.begin;
    m_at = chunk.size > left ? m_source.size() : chunk.begin + chunk.size + chunk.size % 2;
    return chunk;
}

} // namespace ostrelle
