#pragma once

#include "files/ThumbnailSource.h"

#include <QHash>
#include <QImage>
#include <QObject>
#include <QString>
#include <QStringList>

#include <map>

namespace ostrelle {

/// The pictures beside recent files, in memory only. Main thread only, so that nothing needs a lock: the pictures are
/// made in helper processes and handed over here.
class RecentThumbnails : public QObject
{
    Q_OBJECT
public:
    /// The longer side, device pixels.
    static constexpr int kPixelSize = 64;
    static constexpr int kCapacity = 16;

    explicit RecentThumbnails(ThumbnailSource &source, QObject *parent = nullptr);

    /// The picture; null when it is not there.
    QImage cached(const QString &path) const { return m_pictures.value(path); }
    /// Has the picture made unless it is there, or being made. When there is none, the next call tries again.
    void load(const QString &path);
    /// Has it made anew: the file may be another one by now. Until then the old one stays.
    void renew(const QString &path);
    /// Drops all pictures, and what is being made.
    void forget();

Q_SIGNALS:
    void arrived(const QString &path);

private:
    void request(const QString &path);
    void take(const QString &path, const QImage &picture);

    ThumbnailSource &m_source;
    QHash<QString, QImage> m_pictures;
    QStringList m_order; ///< the oldest first; being used makes none younger
    std::map<QString, ThumbnailRequest> m_requests;
};

} // namespace ostrelle
