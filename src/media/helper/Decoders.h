#pragma once

#include "media_common/HelperProtocol.h"

namespace ostrelle {

class ByteSource;
class PictureBuilder;

/// Each reads one kind of file from `source` and delivers its first, main or embedded picture to `builder`. Done means
/// that every row was delivered, or as many as a damaged file had where the kind allows for that.
using Decode = HelperStatus(ByteSource &source, PictureBuilder &builder);

// The light ones.
Decode decodeJpeg;
Decode decodePng;
Decode decodeGif;
Decode decodeWebP;
Decode decodeTiff; ///< not of cameras' raw files
Decode decodeAnyTiff;
Decode decodeBmp;
Decode decodeIco;
Decode decodePsd;
Decode decodeMp3Cover;
Decode decodeWavCover;
Decode decodeAiffCover;
Decode decodeFlacCover;
Decode decodeOggCover;
Decode decodeSpeexCover;
Decode decodeMp4Cover;

/// For pictures inside other files, which are JPEG or PNG.
Decode decodeEmbedded;

// The heavy ones.
Decode decodeMedia;
Decode decodePdf;
Decode decodeSvg;
Decode decodeRaw;
Decode decodeRawOrTiff; ///< what decodeTiff() declines
Decode decodeHeif;
Decode decodeJpegXl;
Decode decodePsdOfAnyKind;
Decode decodeBmpOfAnyKind;

} // namespace ostrelle
