#pragma once

#include <QCache>
#include <QImage>
#include <QUuid>

#include <optional>

namespace ostrelle {

/// The pictures of list entries by their id, the most recently used ones up to a limit. Main thread.
class ThumbnailCache
{
public:
    /// `limit` is the number of pictures that are kept.
    explicit ThumbnailCache(int limit);

    /// The picture; a null image when it is known that there is none of this entry; nothing when it is not known.
    std::optional<QImage> find(const QUuid &id) const;
    void insert(const QUuid &id, const QImage &picture);
    void remove(const QUuid &id);
    void clear();

private:
    QCache<QUuid, QImage> m_pictures;
};

} // namespace ostrelle
