#include "media_helper/FileKind.h"

#include "media_helper/AudioFrameHeader.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace ostrelle {
namespace {

using namespace std::literals;

struct Magic
{
    std::size_t offset;
    std::string_view bytes;
    FileKind kind;
};

/// The first that matches. Cameras write pictures that are TIFF inside, so theirs stand before TIFF.
constexpr std::array kMagics{
    Magic{0, "\xff\xd8\xff"sv, FileKind::Jpeg},
    Magic{0, "\x89PNG\r\n\x1a\n"sv, FileKind::Png},
    Magic{0, "GIF87a"sv, FileKind::Gif},
    Magic{0, "GIF89a"sv, FileKind::Gif},
    Magic{8, "WEBPVP8"sv, FileKind::WebP},
    Magic{8, "CR\2"sv, FileKind::Raw},
    Magic{6, "HEAPCCDR"sv, FileKind::Raw},
    Magic{0, "FUJIFILMCCD-RAW"sv, FileKind::Raw},
    Magic{0, "IIRO"sv, FileKind::Raw},
    Magic{0, "IIRS"sv, FileKind::Raw},
    Magic{0, "MMOR"sv, FileKind::Raw},
    Magic{0, "IIU\0"sv, FileKind::Raw},
    Magic{0, "\0MRM"sv, FileKind::Raw},
    Magic{0, "FOVb"sv, FileKind::Raw},
    Magic{0, "II*\0"sv, FileKind::Tiff},
    Magic{0, "MM\0*"sv, FileKind::Tiff},
    Magic{0, "II+\0"sv, FileKind::Tiff},
    Magic{0, "MM\0+"sv, FileKind::Tiff},
    Magic{0, "\0\0\1\0"sv, FileKind::Ico},
    Magic{0, "8BPS"sv, FileKind::Psd},
    Magic{0, "\xff\x0a"sv, FileKind::JpegXl},
    Magic{0, "\0\0\0\x0cJXL "sv, FileKind::JpegXl},
    Magic{0, "\0\0\0\x0cjP  \r\n\x87\n"sv, FileKind::Jpeg2000},
    Magic{0, "\xff\x4f\xff\x51"sv, FileKind::Jpeg2000},
    Magic{0, "\x76\x2f\x31\x01"sv, FileKind::Exr},
    Magic{0, "#?RADIANCE"sv, FileKind::Hdr},
    Magic{0, "#?RGBE"sv, FileKind::Hdr},
    Magic{4, "ftypcrx "sv, FileKind::Raw},
    Magic{4, "ftypM4A "sv, FileKind::Mp4Audio},
    Magic{4, "ftypM4B "sv, FileKind::Mp4Audio},
    Magic{0, "ID3"sv, FileKind::Mp3},
    Magic{0, "fLaC"sv, FileKind::Flac},
    Magic{28, "\1vorbis"sv, FileKind::OggAudio},
    Magic{28, "OpusHead"sv, FileKind::OggAudio},
    Magic{28, "Speex   "sv, FileKind::Speex},
    Magic{4, "ftyp"sv, FileKind::OtherMedia},
    Magic{4, "moov"sv, FileKind::OtherMedia},
    Magic{4, "mdat"sv, FileKind::OtherMedia},
    Magic{4, "wide"sv, FileKind::OtherMedia},
    Magic{0, "\x1a\x45\xdf\xa3"sv, FileKind::OtherMedia}, // Matroska, WebM
    Magic{0, "OggS"sv, FileKind::OtherMedia},
    Magic{8, "AVI "sv, FileKind::OtherMedia},
    Magic{8, "WAVE"sv, FileKind::Wav},
    Magic{8, "AIFF"sv, FileKind::Aiff},
    Magic{8, "AIFC"sv, FileKind::Aiff},
    Magic{0, "caff\0\1"sv, FileKind::Caf},
    Magic{0, "FLV\1"sv, FileKind::OtherMedia},
    Magic{0, "\x30\x26\xb2\x75\x8e\x66\xcf\x11"sv, FileKind::OtherMedia}, // ASF: WMV, WMA
    Magic{0, "\0\0\1\xba"sv, FileKind::OtherMedia},                       // MPEG program stream
    Magic{0, "\0\0\1\xb3"sv, FileKind::OtherMedia},                       // MPEG video
    Magic{0, "MAC "sv, FileKind::OtherMedia},                             // Monkey's Audio
    Magic{0, "wvpk"sv, FileKind::OtherMedia},                             // WavPack
    Magic{0, "MPCK"sv, FileKind::OtherMedia},                             // Musepack
    Magic{0, "MP+"sv, FileKind::OtherMedia},                              // Musepack, before
    Magic{0, "TTA1"sv, FileKind::OtherMedia},                             // True Audio
    Magic{0, ".snd"sv, FileKind::OtherMedia},                             // AU
    Magic{0, "riff\x2e\x91\xcf\x11"sv, FileKind::OtherMedia},             // Wave64
    Magic{0, "Creative Voice File"sv, FileKind::OtherMedia},
    Magic{0, "#!AMR"sv, FileKind::OtherMedia},
    Magic{0, "DSD "sv, FileKind::OtherMedia},
    Magic{0, "\x0b\x77"sv, FileKind::OtherMedia},         // AC-3
    Magic{0, "\x7f\xfe\x80\x01"sv, FileKind::OtherMedia}, // DTS
    Magic{0, ".RMF"sv, FileKind::OtherMedia},
    Magic{0, "YUV4MPEG2 "sv, FileKind::OtherMedia},
};

constexpr std::array kHeifBrands{"heic"sv, "heix"sv, "heim"sv, "heis"sv, "hevc"sv,
                                 "mif1"sv, "msf1"sv, "avif"sv, "avis"sv};

std::string_view part(std::string_view text, std::size_t offset, std::size_t size)
{
    return offset < text.size() ? text.substr(offset, size) : std::string_view();
}

/// The brand may stand first or among the compatible ones.
bool isHeif(std::string_view text)
{
    if (part(text, 4, 4) != "ftyp"sv)
        return false;
    const std::string_view brand = part(text, 8, 4);
    return std::find(kHeifBrands.begin(), kHeifBrands.end(), brand) != kHeifBrands.end();
}

/// Phase One's, which is TIFF but for a second mark.
bool isPhaseOne(std::string_view text)
{
    return (part(text, 0, 4) == "II*\0"sv && part(text, 8, 4) == "IIII"sv) ||
           (part(text, 0, 4) == "MM\0*"sv && part(text, 8, 4) == "MMMM"sv);
}

/// Bitmaps of Targa begin with the same bytes, but have zeros where a cursor counts its pictures.
bool isCursor(std::string_view text)
{
    return part(text, 0, 4) == "\0\0\2\0"sv && text.size() > 22 && text[4] != 0 && text[5] == 0 && text[9] == 0 &&
           part(text, 20, 2) == "\0\0"sv;
}

/// Text whose first element, after declarations and comments, is an svg.
bool isSvg(std::string_view text)
{
    if (text.substr(0, 3) == "\xef\xbb\xbf"sv)
        text.remove_prefix(3);
    const std::size_t start = text.find_first_not_of(" \t\r\n"sv);
    if (start == std::string_view::npos || text[start] != '<' || text.find('\0') != std::string_view::npos)
        return false;
    return text.find("<svg"sv) != std::string_view::npos || text.find("<!DOCTYPE svg"sv) != std::string_view::npos;
}

/// No text at all, but one whole pixel format: "BM" alone begins many a text.
bool isBmp(std::string_view text)
{
    if (text.substr(0, 2) != "BM"sv || text.size() < 26)
        return false;
    const unsigned header = static_cast<unsigned char>(text[14]);
    return (header == 12 || header == 16 || header == 40 || header == 52 || header == 56 || header == 64 ||
            header == 108 || header == 124) &&
           text.substr(15, 3) == "\0\0\0"sv;
}

/// A mark of two letters, then white space: "P6" alone begins many a text.
bool isPnm(std::string_view text)
{
    constexpr auto kKinds = "1234567Ff"sv;
    constexpr auto kSeparators = " \t\r\n"sv;
    return text.size() > 3 && text[0] == 'P' && kKinds.find(text[1]) != std::string_view::npos &&
           kSeparators.find(text[2]) != std::string_view::npos;
}

/// Packets of 188 bytes, or 192 with a time before each.
bool isTransportStream(std::string_view text)
{
    const auto hasSync = [&](std::size_t first, std::size_t size) {
        return text.size() > first + 4 * size && text[first] == 'G' && text[first + size] == 'G' &&
               text[first + 2 * size] == 'G' && text[first + 3 * size] == 'G';
    };
    return hasSync(0, 188) || hasSync(4, 192);
}

} // namespace

FileKind sniffedKind(std::span<const std::uint8_t> head)
{
    const std::string_view text(reinterpret_cast<const char *>(head.data()), head.size());
    if (isHeif(text))
        return FileKind::Heif;
    if (isBmp(text))
        return FileKind::Bmp;
    if (isPhaseOne(text))
        return FileKind::Raw;
    if (isCursor(text))
        return FileKind::Ico;
    for (const Magic &magic : kMagics) {
        if (part(text, magic.offset, magic.bytes.size()) == magic.bytes)
            return magic.kind;
    }
    if (beginsWithFrames(head, readMpegFrameHeader))
        return FileKind::Mp3;
    if (beginsWithFrames(head, readAdtsFrameHeader))
        return FileKind::Aac;
    if (text.substr(0, 1024).find("%PDF-"sv) != std::string_view::npos)
        return FileKind::Pdf;
    if (isSvg(text))
        return FileKind::Svg;
    if (isPnm(text))
        return FileKind::Pnm;
    if (isTransportStream(text))
        return FileKind::OtherMedia;
    // Cut out of a longer one.
    if (endsWithFrames(head, readMpegFrameHeader))
        return FileKind::Mp3;
    if (endsWithFrames(head, readAdtsFrameHeader))
        return FileKind::Aac;
    return FileKind::Unknown;
}

FileKind sniffedKind(std::span<const std::uint8_t> head, std::string_view ending)
{
    constexpr std::array kTarga{"tga"sv, "targa"sv, "icb"sv, "vda"sv, "vst"sv};
    constexpr std::array kDrawings{"svgz"sv, "svg"sv};
    const auto isNamed = [ending](const auto &endings) {
        return std::find(endings.begin(), endings.end(), ending) != endings.end();
    };
    const FileKind kind = sniffedKind(head);
    if (kind != FileKind::Unknown)
        return kind;
    const std::string_view text(reinterpret_cast<const char *>(head.data()), head.size());
    if (part(text, 0, 3) == "\x1f\x8b\x08"sv && isNamed(kDrawings))
        return FileKind::Svg;
    return isNamed(kTarga) ? FileKind::Tga : FileKind::Unknown;
}

} // namespace ostrelle
