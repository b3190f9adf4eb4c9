#include "clipboard/ClipboardRowPictures.h"

#include "clipboard/BackgroundWork.h"
#include "clipboard/ClipboardService.h"

#include <QBuffer>
#include <QImageReader>

#include <algorithm>
#include <cmath>

namespace ostrelle {
namespace {

/// Whole decoded images up to the limit of pixels, four bytes each.
constexpr int kAllocationLimitMegabytes = 400;
/// Beyond this ratio of the sides, a picture scaled to fill the tile would be too long to hold.
constexpr int kLongestRatio = 16;

/// By content, so that no other decoder ever sees what was copied.
QByteArray formatOf(const QByteArray &bytes)
{
    if (bytes.startsWith("\x89PNG\r\n\x1a\n"))
        return QByteArrayLiteral("png");
    if (bytes.startsWith(QByteArrayView("II*\0", 4)) || bytes.startsWith(QByteArrayView("MM\0*", 4)))
        return QByteArrayLiteral("tiff");
    return {};
}

QRect middleSquare(const QSize &size)
{
    const int side = std::min(size.width(), size.height());
    return {(size.width() - side) / 2, (size.height() - side) / 2, side, side};
}

bool isWithinLimit(const QSize &size)
{
    return qint64(size.width()) * size.height() <= kRowPicturePixelLimit;
}

} // namespace

RowPicture decodedRowPicture(const QByteArray &bytes, int side)
{
    const QByteArray format = formatOf(bytes);
    if (format.isEmpty())
        return {};
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer, format);
    reader.setAutoDetectImageFormat(false);
    const QSize size = reader.size();
    if (size.isEmpty())
        return {};
    if (!isWithinLimit(size))
        return {.tile = {}, .pixelSize = size};
    const int shorter = std::min(size.width(), size.height());
    const int longer = std::max(size.width(), size.height());
    if (longer / shorter > kLongestRatio) {
        reader.setClipRect(middleSquare(size));
        reader.setScaledSize({side, side});
    } else {
        reader.setScaledSize(size.scaled(side, side, Qt::KeepAspectRatioByExpanding));
    }
    const QImage picture = reader.read();
    if (picture.isNull())
        return {};
    return {.tile = picture.copy(middleSquare(picture.size())).convertToFormat(QImage::Format_ARGB32_Premultiplied),
            .pixelSize = size};
}

ClipboardRowPictures::ClipboardRowPictures(ClipboardService &service, QObject *parent)
    : QObject(parent)
    , m_service(service)
{
    // For the whole process, and below what the limit of pixels may need otherwise.
    QImageReader::setAllocationLimit(kAllocationLimitMegabytes);
}

QImage ClipboardRowPictures::tile(const QUuid &item) const
{
    const auto kept = std::find_if(m_kept.cbegin(), m_kept.cend(), [&](const Kept &k) { return k.item == item; });
    return kept == m_kept.cend() ? QImage() : kept->tile;
}

void ClipboardRowPictures::want(const QList<QUuid> &items, double devicePixelRatio)
{
    if (devicePixelRatio != m_devicePixelRatio) {
        m_devicePixelRatio = devicePixelRatio;
        m_kept.clear();
    }
    m_wanted.clear();
    for (const QUuid &item : items) {
        const auto kept = std::find_if(m_kept.begin(), m_kept.end(), [&](const Kept &k) { return k.item == item; });
        if (kept == m_kept.end())
            m_wanted.append(item);
        else
            std::rotate(kept, kept + 1, m_kept.end());
    }
    readNext();
}

void ClipboardRowPictures::readNext()
{
    if (m_isReading || m_wanted.isEmpty())
        return;
    m_isReading = true;
    const QUuid item = m_wanted.first();
    m_service.readImage(item, this, [this, item](const std::optional<QByteArray> &bytes) { decode(item, bytes); });
}

void ClipboardRowPictures::decode(const QUuid &item, const std::optional<QByteArray> &bytes)
{
    if (!m_wanted.contains(item)) {
        m_isReading = false;
        readNext();
        return;
    }
    const double ratio = m_devicePixelRatio;
    const int side = static_cast<int>(std::ceil(kSide * ratio));
    runInBackground(
        *this, [bytes, side] { return bytes ? decodedRowPicture(*bytes, side) : RowPicture(); },
        [this, item, ratio](const RowPicture &picture) { keep(item, picture, ratio); });
}

void ClipboardRowPictures::keep(const QUuid &item, const RowPicture &picture, double devicePixelRatio)
{
    m_isReading = false;
    if (devicePixelRatio == m_devicePixelRatio) {
        m_wanted.removeOne(item);
        m_kept.append({.item = item, .tile = picture.tile});
        if (m_kept.size() > kKept)
            m_kept.removeFirst();
    }
    if (!picture.pixelSize.isEmpty()) {
        const QList<ClipItem> &items = m_service.items();
        const auto known = std::find_if(items.cbegin(), items.cend(), [&](const ClipItem &i) { return i.id == item; });
        if (known != items.cend() && known->image && known->image->pixelSize != picture.pixelSize)
            m_service.setImagePixelSize(item, picture.pixelSize);
    }
    Q_EMIT arrived(item);
    readNext();
}

} // namespace ostrelle
