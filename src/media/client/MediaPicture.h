#pragma once

#include <QByteArray>

#include <variant>

namespace ostrelle {

/// A picture as a helper answered it, upright and in sRGB. The pixels are red, green, blue and alpha of eight bits
/// each, premultiplied (QImage::Format_RGBA8888_Premultiplied), rows from the top without gaps: exactly 4 * width *
/// height bytes, none of which come out of this process's own decoding.
struct MediaPicture
{
    int width = 0;
    int height = 0;
    QByteArray pixels;
    int sourceWidth = 0; ///< of the picture in the file; 0 where the thumbnail came from the desktop's cache
    int sourceHeight = 0;
};

/// Why there is no picture; always final for the request.
enum class MediaFailure {
    NotAFile,    ///< missing, or a folder, a symbolic link, a device, a FIFO or a socket; it was not opened
    Unreadable,  ///< no permission, or its disk did not answer in time
    Unsupported, ///< of no kind that a helper knows
    NoPicture,   ///< of a known kind, without a picture in it
    Broken,
    TooLarge,
    TimedOut,
    HelperLost,    ///< the helper died of it or answered nonsense
    HelperMissing, ///< no helper could be started, or it was gone before it had the file
    FailedBefore   ///< remembered in the desktop's cache, for this state of the file
};

using PictureResult = std::variant<MediaPicture, MediaFailure>;
using PngResult = std::variant<QByteArray, MediaFailure>;

} // namespace ostrelle
