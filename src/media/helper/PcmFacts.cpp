#include "media_helper/AudioFacts.h"
#include "media_helper/RiffChunks.h"
#include "media_helper/SoundFile.h"

#include <array>

namespace ostrelle {
namespace {

/// Companded samples are samples as well.
std::optional<int> bitDepthOf(int format)
{
    switch (format & SF_FORMAT_SUBMASK) {
    case SF_FORMAT_PCM_S8:
    case SF_FORMAT_PCM_U8:
    case SF_FORMAT_ULAW:
    case SF_FORMAT_ALAW:
        return 8;
    case SF_FORMAT_PCM_16:
        return 16;
    case SF_FORMAT_PCM_24:
        return 24;
    case SF_FORMAT_PCM_32:
    case SF_FORMAT_FLOAT:
        return 32;
    case SF_FORMAT_DOUBLE:
        return 64;
    default:
        return std::nullopt;
    }
}

/// A coded WAV file has whole blocks only, and says in a chunk of its own how much of them was meant. 0 when it does
/// not.
sf_count_t meantFrames(ByteSource &source)
{
    RiffChunks chunks(source, RiffChunks::Order::LittleEndian);
    while (const auto chunk = chunks.next()) {
        std::array<std::uint8_t, 4> count{};
        if (chunk->name() == "fact" && readWhole(source, chunk->begin, count))
            return static_cast<sf_count_t>(littleEndian(count));
    }
    return 0;
}

sf_count_t framesOf(const SF_INFO &info, ByteSource &source)
{
    constexpr sf_count_t kLongestBlock = 0x10000;
    const bool isCodedWav = (info.format & SF_FORMAT_TYPEMASK) == SF_FORMAT_WAV && !bitDepthOf(info.format);
    const sf_count_t meant = isCodedWav ? meantFrames(source) : 0;
    const bool isLikely = meant > 0 && meant <= info.frames && info.frames - meant < kLongestBlock;
    return isLikely ? meant : info.frames;
}

} // namespace

std::optional<AudioFacts> readPcmFacts(ByteSource &source)
{
    ByteReader reader(source);
    SF_INFO info{};
    const SoundFile file = openSoundFile(reader, info);
    if (!file || info.samplerate < 1)
        return std::nullopt;
    AudioFacts facts;
    facts.sampleRate = info.samplerate;
    facts.channels = info.channels;
    facts.bitDepth = bitDepthOf(info.format);
    const sf_count_t frames = framesOf(info, source);
    if (frames > 0 && frames < SF_COUNT_MAX)
        facts.duration = static_cast<double>(frames) / info.samplerate;
    // What libsndfile states for compressed streams is a rule of thumb.
    if (facts.bitDepth)
        facts.bitRate = *facts.sampleRate * info.channels * *facts.bitDepth;
    return facts;
}

} // namespace ostrelle
