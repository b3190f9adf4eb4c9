#pragma once

#include "media_client/MediaClient.h"

#include <QByteArray>
#include <QImage>
#include <QList>
#include <QString>

namespace ostrelle {

/// Writes `bytes` to `path`, in folders made for it.
void writeFile(const QString &path, const QByteArray &bytes);
/// The picture encoded by Qt, "png", "jpg" and so on.
QByteArray encoded(const QImage &image, const char *format, int quality = -1);
/// Left half red, right half green; the top left corner white. So is every turn of it told from the others.
QImage turnable(int width, int height);
/// A JPEG file with this Exif orientation.
QByteArray withOrientation(const QByteArray &jpeg, int orientation);

/// The result as an image; null when it is a failure.
QImage imageOf(const PictureResult &result);
/// All channels differ by at most `tolerance`.
bool isNear(const QColor &colour, const QColor &expected, int tolerance = 12);

/// The folder of the real helpers.
QString helperFolder();
/// The child processes that this process has.
QList<int> childProcesses();
int childCount();

} // namespace ostrelle
