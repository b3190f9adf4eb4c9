#include "media_helper/AudioFacts.h"
#include "media_helper/ByteFields.h"
#include "media_helper/Id3Tag.h"

#include <array>

namespace ostrelle {
namespace {

constexpr std::uint64_t kFirstChunk = 12;
constexpr std::size_t kChunkHeader = 8;
/// The size of a chunk whose size is told elsewhere (EBU Tech 3306, RF64).
constexpr std::uint64_t kTold = 0xffffffff;

using ReadNumber = std::uint64_t(ByteSpan bytes);

/// Goes from chunk to chunk to those that hold an ID3v2 tag.
std::optional<double> tempoInChunks(ByteSource &source, ReadNumber &number)
{
    std::uint64_t dataSize = 0;
    for (std::uint64_t at = kFirstChunk; at + kChunkHeader <= source.size();) {
        std::array<std::uint8_t, kChunkHeader> header{};
        if (!readWhole(source, at, header))
            break;
        const std::string_view name = asText(header).substr(0, 4);
        std::uint64_t size = number(ByteSpan(header).subspan(4, 4));
        at += kChunkHeader;
        if (name == "ID3 " || name == "id3 ") {
            if (const auto tempo = id3Tempo(source, at))
                return tempo;
        }
        if (name == "ds64") {
            std::array<std::uint8_t, 16> sizes{};
            if (readWhole(source, at, sizes))
                dataSize = number(ByteSpan(sizes).subspan(8, 8));
        }
        if (name == "data" && size == kTold)
            size = dataSize;
        if (size > source.size() - at)
            break;
        at += size + size % 2;
    }
    return std::nullopt;
}

} // namespace

std::optional<double> readWavTempo(ByteSource &source)
{
    return tempoInChunks(source, littleEndian);
}

std::optional<double> readAiffTempo(ByteSource &source)
{
    return tempoInChunks(source, bigEndian);
}

} // namespace ostrelle
