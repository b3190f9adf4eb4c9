#include "media_helper/FontFolders.h"
#include "media_helper/HelperService.h"
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
    DecoderRow{FileKind::Pdf, decodePdf},
    DecoderRow{FileKind::Svg, decodeSvg},
    DecoderRow{FileKind::Heif, decodeHeif},
    DecoderRow{FileKind::JpegXl, decodeJpegXl},
    DecoderRow{FileKind::Raw, decodeRaw},
    // The light helper declines what is a camera's.
    DecoderRow{FileKind::Tiff, decodeRaw},
    DecoderRow{FileKind::Psd, decodePsd},
    DecoderRow{FileKind::Bmp, decodeBmpOfAnyKind},
};

constexpr DecoderTable kPictures{kDecoders, UnknownKinds::Refuse};

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
        {HelperCommand::Tempo, [](ByteSource &source, const HelperRequest &) { return answerTempo(source, kHeard); }},
    };
    return serveFiles(limits, commands);
}
