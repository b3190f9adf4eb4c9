#pragma once

#include "files/RecentEntry.h"
#include "files/RecordListModel.h"
#include "records/RecentFile.h"

#include <QPropertyNotifier>
#include <QSet>
#include <QString>
#include <QUuid>

namespace ostrelle {

class AudioPreview;
class FilePresence;
class RecentFiles;
class RecentThumbnails;

/// A recent file with an id that stands for its path.
struct RecentRecord
{
    QUuid id;
    RecentFile file;

    friend bool operator==(const RecentRecord &, const RecentRecord &) = default;
};

/// The recent files of one tool as a list, newest first, with what is known of each.
class RecentListModel : public RecordListModel<RecentRecord>
{
    Q_OBJECT
public:
    static constexpr int kEntryRole = Qt::UserRole; ///< a RecentEntry

    /// What there is besides the names: `preview` for files that are played in place, `thumbnails` for those that have
    /// pictures; each may be null.
    struct Surroundings
    {
        RecentFiles &recents;
        FilePresence &presence;
        AudioPreview *preview = nullptr;
        RecentThumbnails *thumbnails = nullptr;
    };

    RecentListModel(const Surroundings &surroundings, QObject *parent = nullptr);

    /// Besides kEntryRole the name as DisplayRole, everything in words as AccessibleTextRole, the path as ToolTipRole
    /// and AccessibleDescriptionRole.
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

    RecentEntry entry(int row) const;
    const RecentFile &file(int row) const { return records().at(row).file; }
    QUuid idAt(int row) const { return records().at(row).id; }
    /// -1 when it is not listed.
    int rowOf(const QUuid &id) const;
    /// The rows that can be seen now: the pictures of those that have come into sight are made, unless they are there.
    /// One that cannot be made is tried again when its row comes into sight again.
    void setVisibleRows(int first, int last);

Q_SIGNALS:
    /// Around all the changes that lead from one state of the list to the next.
    void aboutToFollow();
    void followed();

private:
    void follow();
    void renewThumbnails(const QList<RecentRecord> &after);
    void followPlaying();
    void tellPaths(const QStringList &paths);

    Surroundings m_around;
    QString m_playingPath;
    QSet<QString> m_visible; ///< paths of the rows that can be seen
    QPropertyNotifier m_itemsWatch;
    QPropertyNotifier m_playingWatch;
    QPropertyNotifier m_positionWatch;
};

} // namespace ostrelle
