#include "media_helper/AudioFacts.h"
#include "media_helper/Id3Tag.h"
#include "media_helper/RiffChunks.h"

namespace ostrelle {
namespace {

/// Goes from chunk to chunk to those that hold an ID3v2 tag.
std::optional<double> tempoInChunks(ByteSource &source, RiffChunks::Order order)
{
    RiffChunks chunks(source, order);
    while (const auto chunk = chunks.next()) {
        const bool isTag = chunk->name() == "ID3 " || chunk->name() == "id3 ";
        if (const auto tempo = isTag ? id3Tempo(source, chunk->begin) : std::nullopt)
            return tempo;
    }
    return std::nullopt;
}

} // namespace

std::optional<double> readWavTempo(ByteSource &source)
{
    return tempoInChunks(source, RiffChunks::Order::LittleEndian);
}

std::optional<double> readAiffTempo(ByteSource &source)
{
    return tempoInChunks(source, RiffChunks::Order::BigEndian);
}

} // namespace ostrelle
