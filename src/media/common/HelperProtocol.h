#pragma once

#include <array>
#include <cstdint>

namespace ostrelle {

/// What goes over the socket between the program and a media helper, both of one machine and one build. The helper's
/// standard input is a stream socket. Per file one HelperRequest comes in, with the file's descriptor (SCM_RIGHTS), and
/// one HelperAnswer with its payload goes back before the next. A socket that closes ends the helper.
inline constexpr std::uint32_t kHelperMagic = 0x4d74734f;

enum class HelperCommand : std::uint32_t {
    Thumbnail = 1, ///< the payload is pixels
    ToPng = 2,     ///< the payload is the whole picture as PNG bytes
    AudioInfo = 3, ///< the payload is a JSON object, see audioInfoFromJson()
    ImageInfo = 4, ///< the payload is a JSON object, see imageInfoFromJson()
    Tempo = 5,     ///< the payload is a JSON object, see tempoFromJson()
};

enum class HelperStatus : std::uint32_t {
    Done = 0,
    Declined,    ///< the other helper knows this kind of file
    Unsupported, ///< no kind that is known
    NoPicture,   ///< a sound kind of file, without a picture in it
    Broken,
    TooLarge, ///< the picture itself, or the answer above the output limit
    OutOfMemory,
};

/// The longest side that a thumbnail may be asked for.
inline constexpr std::uint32_t kLongestThumbnailSide = 1024;

struct HelperRequest
{
    std::uint32_t magic = kHelperMagic;
    std::uint32_t id = 0;
    HelperCommand command = HelperCommand::Thumbnail;
    std::uint32_t side = 0;      ///< pixels of the longer side of the picture asked for, 1 to kLongestThumbnailSide
    std::uint32_t cacheSide = 0; ///< beside it a second one of this longer side, at least `side`; 0: none
    std::uint32_t isSquare = 0;  ///< 1: the middle square of the picture, `side` on each side
    std::uint32_t cpuSeconds = 0;
    std::uint32_t outputLimit = 0; ///< bytes of the payload
    /// The ending of the file's name in lower case, without the dot, filled up with zeros; empty when it is longer or
    /// has other than ASCII letters and digits. A hint where the content alone does not tell.
    std::array<char, 16> extension{};
};

/// Payload of a thumbnail: `width` times `height` pixels of four bytes, red, green, blue, alpha, premultiplied; then
/// `cacheWidth` times `cacheHeight` of the same, not premultiplied. All in sRGB, upright, rows from the top.
struct HelperAnswer
{
    std::uint32_t magic = kHelperMagic;
    std::uint32_t id = 0;
    HelperStatus status = HelperStatus::Done;
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::uint32_t cacheWidth = 0;
    std::uint32_t cacheHeight = 0;
    std::uint32_t sourceWidth = 0; ///< of the picture in the file, upright
    std::uint32_t sourceHeight = 0;
    std::uint32_t byteSize = 0; ///< of the payload
};

} // namespace ostrelle
