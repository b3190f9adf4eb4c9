#include "files/ThumbnailCache.h"

#include <memory>

namespace ostrelle {

ThumbnailCache::ThumbnailCache(int limit)
    : m_pictures(limit)
{
}

std::optional<QImage> ThumbnailCache::find(const QUuid &id) const
{
    const QImage *picture = m_pictures.object(id);
    return picture ? std::optional(*picture) : std::nullopt;
}

void ThumbnailCache::insert(const QUuid &id, const QImage &picture)
{
    m_pictures.insert(id, std::make_unique<QImage>(picture).release());
}

void ThumbnailCache::remove(const QUuid &id)
{
    m_pictures.remove(id);
}

void ThumbnailCache::clear()
{
    m_pictures.clear();
}

} // namespace ostrelle
