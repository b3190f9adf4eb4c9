#pragma once

#include "files/ThumbnailCache.h"
#include "files/ThumbnailSource.h"
#include "records/ShelfItem.h"

#include <QImage>
#include <QList>
#include <QObject>
#include <QUuid>

#include <map>

namespace ostrelle {

class FilePresence;

/// The pictures on the tiles of the shelf. Those in sight are asked for first, then, as far as they are kept, those
/// around them; what is no longer wanted is not made. Only plain files are ever asked for. Main thread.
class AssetThumbnails : public QObject
{
    Q_OBJECT
public:
    /// Logical side and corner radius of the pictures, which are square.
    static constexpr int kSide = 54;
    static constexpr double kRadius = 7;
    static constexpr int kKept = 160;

    struct Progress
    {
        int done = 0;
        int total = 0; ///< asked for since nothing was missing

        int outstanding() const { return total - done; }
        friend bool operator==(const Progress &, const Progress &) = default;
    };

    /// Without a source there are no pictures.
    AssetThumbnails(ThumbnailSource *source, FilePresence &presence, QObject *parent = nullptr);
    ~AssetThumbnails() override;

    /// The entries that may be shown soon: the first `inSight` ones are seen now, the others come after them; no more
    /// than kKept. Replaces what was wanted before.
    void want(const QList<ShelfItem> &items, qsizetype inSight, double devicePixelRatio);
    /// The picture; null while it is not there, and for good when there is none.
    QImage picture(const QUuid &id) const;
    Progress progress() const { return m_progress; }

Q_SIGNALS:
    void arrived(const QUuid &id);
    void progressChanged();

private:
    struct Asked
    {
        bool isInSight = false;
        ThumbnailRequest request;
    };

    /// It can have a picture, as far as one knows, and has none yet.
    bool isMissing(const ShelfItem &item) const;
    void forgetChanged(const QStringList &paths);
    void ask();
    void askFor(qsizetype first, qsizetype end);
    void take(QUuid id, const QImage &picture);
    void count();

    ThumbnailSource *m_source;
    FilePresence &m_presence;
    ThumbnailCache m_cache;
    double m_devicePixelRatio = 1;
    QList<ShelfItem> m_wanted;
    qsizetype m_inSight = 0;
    std::map<QUuid, Asked> m_asked;
    int m_madeCount = 0;
    Progress m_progress;
};

} // namespace ostrelle
