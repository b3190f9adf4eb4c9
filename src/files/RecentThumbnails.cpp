#include "files/RecentThumbnails.h"

namespace ostrelle {

RecentThumbnails::RecentThumbnails(ThumbnailSource &source, QObject *parent)
    : QObject(parent)
    , m_source(source)
{
}

void RecentThumbnails::load(const QString &path)
{
    if (!m_pictures.contains(path) && !m_requests.contains(path))
        request(path);
}

void RecentThumbnails::renew(const QString &path)
{
    if (m_pictures.contains(path) || m_requests.contains(path))
        request(path);
}

void RecentThumbnails::forget()
{
    m_requests.clear();
    m_pictures.clear();
    m_order.clear();
}

void RecentThumbnails::request(const QString &path)
{
    m_requests[path] =
        m_source.request(path, kPixelSize, this, [this, path](const QImage &picture) { take(path, picture); });
}

void RecentThumbnails::take(const QString &path, const QImage &picture)
{
    // Until the end: with the request may go what `path` stands in.
    const auto answered = m_requests.extract(path);
    if (picture.isNull())
        return;
    m_order.removeOne(path);
    if (m_order.size() >= kCapacity)
        m_pictures.remove(m_order.takeFirst());
    m_pictures.insert(path, picture);
    m_order.append(path);
    Q_EMIT arrived(path);
}

} // namespace ostrelle
