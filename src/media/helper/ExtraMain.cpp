#include "media_helper/FontFolders.h"
#include "media_helper/HelperService.h"

#include <array>

extern "C" {
#include <libavutil/log.h>
}

namespace {

using namespace ostrelle;

constexpr std::array kDecoders{
    DecoderRow{FileKind::OtherMedia, decodeMedia},
    DecoderRow{FileKind::Pdf, decodePdf},
    DecoderRow{FileKind::Svg, decodeSvg},
    DecoderRow{FileKind::Heif, decodeHeif},
    DecoderRow{FileKind::JpegXl, decodeJpegXl},
    DecoderRow{FileKind::Raw, decodeRaw},
    // The light helper declines what is a camera's.
    DecoderRow{FileKind::Tiff, decodeRaw},
    DecoderRow{FileKind::Psd, decodePsdOfAnyKind},
    DecoderRow{FileKind::Bmp, decodeBmpOfAnyKind},
};

constexpr DecoderTable kPictures{kDecoders, UnknownKinds::Refuse};

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
    };
    return serveFiles(limits, commands);
}
