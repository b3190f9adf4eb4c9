#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace ostrelle {

enum class FileKind {
    Unknown,
    Jpeg,
    Png,
    Gif,
    WebP,
    Tiff,
    Bmp,
    Ico, ///< and cursors
    Psd,
    Svg,  ///< and packed ones
    Heif, ///< and AVIF
    JpegXl,
    Jpeg2000,
    Exr,
    Hdr, ///< Radiance
    Pnm, ///< PBM, PGM, PPM, PAM, PFM
    Tga, ///< has no mark of its own, so the name has to say it
    Raw,
    Pdf,
    Wav,  ///< and RF64
    Aiff, ///< and AIFF-C
    Caf,
    Mp3, ///< MPEG audio of any layer, and what begins with an ID3v2 tag
    Aac, ///< bare, in ADTS
    Flac,
    OggAudio, ///< Vorbis or Opus
    Speex,    ///< in Ogg
    Mp4Audio,
    OtherMedia, ///< video, and audio of the less common kinds
};

/// How much of a file's begin sniffedKind() wants to see.
inline constexpr std::size_t kSniffedBytes = 4096;

/// What a file is by its first bytes; its name is never asked.
FileKind sniffedKind(std::span<const std::uint8_t> head);
/// The same, with the ending of its name, in lower case, for the few kinds that have no mark of their own: Targa, and
/// drawings packed by gzip.
FileKind sniffedKind(std::span<const std::uint8_t> head, std::string_view ending);

} // namespace ostrelle
