#include "clipboard/ClipboardRowPictures.h"

#include "clipboard/ClipboardService.h"

#include <algorithm>
#include <cmath>

namespace ostrelle {

ClipboardRowPictures::ClipboardRowPictures(ClipboardService &service, ClipImages &images, QObject *parent)
    : QObject(parent)
    , m_service(service)
    , m_images(images)
{
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
        dropDecoding();
    }
    m_wanted.clear();
    for (const QUuid &item : items) {
        const auto kept = std::find_if(m_kept.begin(), m_kept.end(), [&](const Kept &k) { return k.item == item; });
        if (kept == m_kept.end())
            m_wanted.append(item);
        else
            std::rotate(kept, kept + 1, m_kept.end());
    }
    if (!m_wanted.contains(m_current))
        dropDecoding();
    readNext();
}

/// What is still being read goes on until it is there.
void ClipboardRowPictures::dropDecoding()
{
    if (m_decoding) {
        m_decoding.reset();
        m_current = {};
    }
}

void ClipboardRowPictures::readNext()
{
    if (!m_current.isNull() || m_wanted.isEmpty())
        return;
    m_current = m_wanted.first();
    m_service.readImage(m_current, this, [this](const std::optional<QByteArray> &bytes) { decode(bytes); });
}

void ClipboardRowPictures::decode(const std::optional<QByteArray> &bytes)
{
    const QUuid item = m_current;
    if (!m_wanted.contains(item)) {
        m_current = {};
        readNext();
    } else if (!bytes || bytes->isEmpty()) {
        keep(item, {});
    } else {
        const int side = static_cast<int>(std::ceil(kSide * m_devicePixelRatio));
        m_decoding = m_images.tile(*bytes, side, [this, item](const ClipTile &tile) { keep(item, tile); });
    }
}

void ClipboardRowPictures::keep(const QUuid &item, const ClipTile &tile)
{
    m_decoding.reset();
    m_current = {};
    m_wanted.removeOne(item);
    m_kept.append({.item = item, .tile = tile.picture});
    if (m_kept.size() > kKept)
        m_kept.removeFirst();
    if (!tile.pixelSize.isEmpty()) {
        const QList<ClipItem> &items = m_service.items();
        const auto known = std::find_if(items.cbegin(), items.cend(), [&](const ClipItem &i) { return i.id == item; });
        if (known != items.cend() && known->image && known->image->pixelSize != tile.pixelSize)
            m_service.setImagePixelSize(item, tile.pixelSize);
    }
    Q_EMIT arrived(item);
    readNext();
}

} // namespace ostrelle
