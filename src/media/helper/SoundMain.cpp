#include "media_helper/AudioCommand.h"
#include "media_helper/HelperService.h"
#include "media_helper/TempoCommand.h"

#include <array>

namespace {

using namespace ostrelle;

constexpr std::array kSounds{
    AudioFactsRow{FileKind::Wav, readPcmFacts, readWavTempo},
    AudioFactsRow{FileKind::Aiff, readPcmFacts, readAiffTempo},
    AudioFactsRow{FileKind::Caf, readPcmFacts},
    AudioFactsRow{FileKind::Mp3, readMpegFacts},
    AudioFactsRow{FileKind::Aac, readAdtsFacts},
    AudioFactsRow{FileKind::Flac, readFlacFacts},
    AudioFactsRow{FileKind::OggAudio, readOggFacts},
    AudioFactsRow{FileKind::Speex, readOggFacts},
    AudioFactsRow{FileKind::Mp4Audio, readMp4Facts, readMp4Tempo},
    // MP4 under its other names; the rest is declined.
    AudioFactsRow{FileKind::OtherMedia, readMp4Facts, readMp4Tempo},
};

constexpr AudioFactsTable kAudioFacts{kSounds, UnknownKinds::Decline, 4U << 20U};
constexpr std::array kMixedAudio{
    AudioRow{FileKind::Mp3, openMixedMp3},      AudioRow{FileKind::Wav, openSampledAudio},
    AudioRow{FileKind::Aiff, openSampledAudio}, AudioRow{FileKind::Caf, openSampledAudio},
    AudioRow{FileKind::Flac, openSampledAudio}, AudioRow{FileKind::OggAudio, openSampledAudio},
};

constexpr AudioTable kHeard{kMixedAudio, UnknownKinds::Decline};

} // namespace

int main()
{
    SandboxLimits limits;
    limits.addressSpace = std::size_t(640) << 20U;
    limits.cpuSeconds = 120;
    const Commands commands{
        {HelperCommand::AudioInfo,
         [](ByteSource &source, const HelperRequest &) { return answerAudioInfo(source, kAudioFacts); }},
        {HelperCommand::Tempo, [](ByteSource &source, const HelperRequest &) { return answerTempo(source, kHeard); }},
    };
    return serveFiles(limits, commands);
}
