#include "media_helper/HelperService.h"

#include <array>

namespace {

using namespace ostrelle;

constexpr std::array kDecoders{
    DecoderRow{FileKind::Jpeg, decodeJpeg},         DecoderRow{FileKind::Png, decodePng},
    DecoderRow{FileKind::Gif, decodeGif},           DecoderRow{FileKind::WebP, decodeWebP},
    DecoderRow{FileKind::Tiff, decodeTiff},         DecoderRow{FileKind::Bmp, decodeBmp},
    DecoderRow{FileKind::Ico, decodeIco},           DecoderRow{FileKind::Psd, decodePsd},
    DecoderRow{FileKind::Mp3, decodeMp3Cover},      DecoderRow{FileKind::Wav, decodeWavCover},
    DecoderRow{FileKind::Aiff, decodeAiffCover},    DecoderRow{FileKind::Flac, decodeFlacCover},
    DecoderRow{FileKind::OggAudio, decodeOggCover}, DecoderRow{FileKind::Speex, decodeSpeexCover},
    DecoderRow{FileKind::Mp4Audio, decodeMp4Cover},
};

constexpr DecoderTable kPictures{kDecoders, UnknownKinds::Decline};

} // namespace

int main()
{
    SandboxLimits limits;
    limits.addressSpace = std::size_t(640) << 20U;
    limits.cpuSeconds = 120;
    const Commands commands{
        {HelperCommand::Thumbnail,
         [](ByteSource &source, const HelperRequest &request) { return answerThumbnail(source, request, kPictures); }},
        {HelperCommand::ToPng,
         [](ByteSource &source, const HelperRequest &request) { return answerToPng(source, request, kPictures); }},
    };
    return serveFiles(limits, commands);
}
