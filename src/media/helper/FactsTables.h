#pragma once

#include "media_helper/AudioCommand.h"
#include "media_helper/ImageCommand.h"

#include <array>

namespace ostrelle {

// What is told by headers alone, in a few libraries that start quickly. The rest is declined.

inline constexpr std::array kImageReaders{
    ImageFactsRow{FileKind::Jpeg, readJpegFacts},         ImageFactsRow{FileKind::Png, readPngFacts},
    ImageFactsRow{FileKind::Gif, readGifFacts},           ImageFactsRow{FileKind::WebP, readWebPFacts},
    ImageFactsRow{FileKind::Tiff, readTiffFacts, true},   ImageFactsRow{FileKind::Bmp, readBmpFacts},
    ImageFactsRow{FileKind::Ico, readIcoFacts},           ImageFactsRow{FileKind::Psd, readPsdFacts},
    ImageFactsRow{FileKind::Pnm, readPnmFacts},           ImageFactsRow{FileKind::Hdr, readHdrFacts},
    ImageFactsRow{FileKind::Exr, readExrFacts},           ImageFactsRow{FileKind::Tga, readTgaFacts},
    ImageFactsRow{FileKind::Jpeg2000, readJpeg2000Facts},
};
inline constexpr ImageFactsTable kImageFacts{kImageReaders, UnknownKinds::Decline, std::uint64_t(4) << 20U};

/// The sound helper knows those that are not compressed.
inline constexpr std::array kSoundReaders{
    AudioFactsRow{FileKind::Mp3, readMpegFacts},
    AudioFactsRow{FileKind::Aac, readAdtsFacts},
    AudioFactsRow{FileKind::Flac, readFlacFacts},
    AudioFactsRow{FileKind::OggAudio, readOggFacts},
    AudioFactsRow{FileKind::Speex, readOggFacts},
    AudioFactsRow{FileKind::Mp4Audio, readMp4Facts, readMp4Tempo},
    // MP4 under its other names; the rest is declined.
    AudioFactsRow{FileKind::OtherMedia, readMp4Facts, readMp4Tempo},
};
inline constexpr AudioFactsTable kAudioFacts{kSoundReaders, UnknownKinds::Decline, 4U << 20U};

} // namespace ostrelle
