#include "media_helper/AudioFacts.h"
#include "media_helper/SoundFile.h"

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
    if (info.frames > 0 && info.frames < SF_COUNT_MAX)
        facts.duration = static_cast<double>(info.frames) / info.samplerate;
    // What libsndfile states for compressed streams is a rule of thumb.
    if (facts.bitDepth)
        facts.bitRate = *facts.sampleRate * info.channels * *facts.bitDepth;
    return facts;
}

} // namespace ostrelle
