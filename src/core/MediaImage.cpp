#include "core/MediaImage.h"

#include "media_client/MediaPicture.h"

namespace ostrelle {

QImage imageOf(const MediaPicture &picture)
{
    const auto *pixels = reinterpret_cast<const uchar *>(picture.pixels.constData());
    return QImage(pixels, picture.width, picture.height, 4 * qsizetype(picture.width),
                  QImage::Format_RGBA8888_Premultiplied)
        .copy();
}

} // namespace ostrelle
