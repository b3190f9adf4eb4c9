#include "media_helper/AudioCommand.h"
#include "media_helper/FontFolders.h"
#include "media_helper/HelperService.h"
#include "media_helper/ImageCommand.h"
#include "media_helper/TempoCommand.h"

#include <array>

extern "C" {
#include <libavutil/log.h>
}

namespace {

using namespace ostrelle;

constexpr std::array kDecoders{
    DecoderRow{FileKind::OtherMedia, decodeMedia},
    DecoderRow{FileKind::Caf, decodeMedia},
    DecoderRow{FileKind::Aac, decodeMedia},
    DecoderRow{FileKind::Jpeg2000, decodeMedia},
    DecoderRow{FileKind::Exr, decodeMedia},
    DecoderRow{FileKind::Hdr, decodeMedia},
    DecoderRow{FileKind::Pnm, decodeMedia},
    DecoderRow{FileKind::Pdf, decodePdf},
    DecoderRow{FileKind::Svg, decodeSvg},
    DecoderRow{FileKind::Heif, decodeHeif},
    DecoderRow{FileKind::JpegXl, decodeJpegXl},
    DecoderRow{FileKind::Raw, decodeRaw},
    // The light helper declines what looks like a camera's.
    DecoderRow{FileKind::Tiff, decodeRawOrTiff},
    DecoderRow{FileKind::Psd, decodePsdOfAnyKind},
    DecoderRow{FileKind::Bmp, decodeBmpOfAnyKind},
};

constexpr DecoderTable kPictures{kDecoders, UnknownKinds::Refuse};

constexpr std::array kImageReaders{
    ImageFactsRow{FileKind::Heif, readHeifFacts},
    ImageFactsRow{FileKind::JpegXl, readJpegXlFacts},
    ImageFactsRow{FileKind::Svg, readSvgFacts},
    ImageFactsRow{FileKind::Raw, readRawFacts},
    // The light helper declines what looks like a camera's.
    ImageFactsRow{FileKind::Tiff, readRawOrTiffFacts},
};

/// A drawing is read whole, to be sure that it is one.
constexpr ImageFactsTable kImageFacts{kImageReaders, UnknownKinds::Refuse, std::uint64_t(64) << 20U};
/// What the light helper declines: also of its own kinds, which may hold what only FFmpeg knows.
constexpr std::array kSounds{
    AudioFactsRow{FileKind::OtherMedia, readMediaFacts, readMp4Tempo},
    AudioFactsRow{FileKind::Unknown, readMediaFacts},
    AudioFactsRow{FileKind::Wav, readMediaFacts, readWavTempo},
    AudioFactsRow{FileKind::Aiff, readMediaFacts, readAiffTempo},
    AudioFactsRow{FileKind::Caf, readMediaFacts},
    AudioFactsRow{FileKind::Mp3, readMediaFacts},
    AudioFactsRow{FileKind::Aac, readMediaFacts},
    AudioFactsRow{FileKind::Flac, readMediaFacts},
    AudioFactsRow{FileKind::OggAudio, readMediaFacts},
    AudioFactsRow{FileKind::Speex, readMediaFacts},
    AudioFactsRow{FileKind::Mp4Audio, readMediaFacts, readMp4Tempo},
};

constexpr AudioFactsTable kAudioFacts{kSounds, UnknownKinds::Refuse, 32U << 20U};
constexpr std::array kAudio{
    AudioRow{FileKind::OtherMedia, openMediaAudio},
    AudioRow{FileKind::Mp4Audio, openMediaAudio},
    AudioRow{FileKind::Aac, openMediaAudio},
    AudioRow{FileKind::Speex, openMediaAudio},
    AudioRow{FileKind::Unknown, openMediaAudio},
    // Of these the light helper declines what its libraries do not know.
    AudioRow{FileKind::Wav, openMediaAudio},
    AudioRow{FileKind::Aiff, openMediaAudio},
    AudioRow{FileKind::Caf, openMediaAudio},
    AudioRow{FileKind::Mp3, openMediaAudio},
    AudioRow{FileKind::Flac, openMediaAudio},
    AudioRow{FileKind::OggAudio, openMediaAudio},
};

constexpr AudioTable kHeard{kAudio, UnknownKinds::Refuse};

} // namespace

int main()
{
    av_log_set_level(AV_LOG_QUIET);
    SandboxLimits limits;
    limits.addressSpace = std::size_t(2) << 30U;
    limits.cpuSeconds = 240;
    limits.mayStartThreads = true;
    limits.readableFolders = fontFolders();
    const Commands commands{
        {HelperCommand::Thumbnail,
         [](ByteSource &source, const HelperRequest &request) { return answerThumbnail(source, request, kPictures); }},
        {HelperCommand::ToPng,
         [](ByteSource &source, const HelperRequest &request) { return answerToPng(source, request, kPictures); }},
        {HelperCommand::ImageInfo,
         [](ByteSource &source, const HelperRequest &request) {
             return answerImageInfo(source, request, kImageFacts);
         }},
        {HelperCommand::AudioInfo,
         [](ByteSource &source, const HelperRequest &) { return answerAudioInfo(source, kAudioFacts); }},
        {HelperCommand::Tempo, [](ByteSource &source, const HelperRequest &) { return answerTempo(source, kHeard); }},
    };
    return serveFiles(limits, commands);
}
