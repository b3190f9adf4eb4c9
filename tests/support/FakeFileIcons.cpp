#include "support/FakeFileIcons.h"

#include <cmath>

namespace ostrelle {

namespace {

QImage plain(Qt::GlobalColor color, int side, double devicePixelRatio)
{
    const int pixels = static_cast<int>(std::ceil(side * devicePixelRatio));
    QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(color);
    image.setDevicePixelRatio(devicePixelRatio);
    return image;
}

} // namespace

std::optional<QImage> FakeFileIcons::iconFor(const QString &path, int side, double devicePixelRatio)
{
    if (m_isHeldBack)
        return std::nullopt;
    return path.isEmpty() ? QImage() : plain(Qt::blue, side, devicePixelRatio);
}

std::optional<QImage> FakeFileIcons::folderIcon(int side, double devicePixelRatio)
{
    if (m_isHeldBack)
        return std::nullopt;
    return plain(Qt::yellow, side, devicePixelRatio);
}

void FakeFileIcons::release()
{
    m_isHeldBack = false;
    Q_EMIT changed();
}

} // namespace ostrelle
