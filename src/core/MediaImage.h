#pragma once

#include <QImage>

namespace ostrelle {

struct MediaPicture;

/// The picture with pixels of its own.
QImage imageOf(const MediaPicture &picture);

} // namespace ostrelle
