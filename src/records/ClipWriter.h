#pragma once

#include "records/ClipChange.h"
#include "records/ClipJournal.h"
#include "records/ClipboardStore.h"
#include "records/StoredClip.h"

#include <QByteArray>
#include <QList>
#include <QSet>
#include <QString>
#include <QUuid>

#include <functional>
#include <optional>

namespace ostrelle {

/// The history as it lies on the disk, and what is still to be written of it. load() comes first; after it everything
/// runs on one thread, the writer's. Changes only gather; save() brings them to the disk.
class ClipWriter
{
public:
    using Erasure = ClipboardStore::Erasure;

    explicit ClipWriter(const QString &folder);

    /// What the files hold. Changes nothing, and needs no lock of the folder.
    QList<ClipItem> read();
    /// Read by whoever may write: clears away what a killed writer left.
    QList<ClipItem> load();
    /// The list as it is now.
    QList<ClipItem> items() const;
    /// False when another process replaced the array since it was read.
    bool isUpToDate() const;

    void insertAtTop(const ClipItem &item, const QByteArray &image);
    void moveToTop(const ClipChange::Moved &change);
    void setPinned(const ClipChange::Pinned &change);
    void trim(const ClipChange::Removed &change);
    void remove(const ClipChange::Removed &change, Erasure erasure);
    void restore(const QList<ClipItem> &items, const QList<QUuid> &order);
    /// All records, for good; the files are written anew even when there are none.
    void removeAll();
    void settle();

    /// Brings what gathered to the disk; does nothing when that is nothing. After a failure everything stays gathered.
    void save();
    /// Save, and afterwards there is no journal and nothing that could be restored.
    void close();
    /// Nothing waits to be written or erased.
    bool isSaved() const { return m_lines.empty() && !m_mustRewrite && !m_mustErase; }
    /// Bytes in memory that wait to be written.
    qint64 waitingBytes() const { return m_waitingBytes; }

    std::optional<QByteArray> image(const QUuid &id);
    /// The first of `candidates` that has these image bytes; records that may still be restored count as well.
    std::optional<QUuid> find(const QByteArray &image, const QList<QUuid> &candidates);

private:
    bool canAppend() const;
    std::optional<QString> write();
    std::optional<QString> append();
    std::optional<QString> rewrite();
    std::optional<QString> dropJournal();
    bool keepUnreadableAside();
    void forgetLines();
    void dropInsertions(const QSet<QUuid> &ids);
    StoredClip *findAnywhere(const QUuid &id);

    QString m_folder;
    QString m_arrayPath;
    ClipJournal m_journal;

    StoredClips m_clips;
    StoredClips m_restorable;
    /// The array in place, or null.
    std::shared_ptr<const FileDescriptor> m_array;
    qint64 m_arraySize = 0;
    QByteArray m_arrayFingerprint;

    /// The changes that are not on the disk. Where the array is rewritten at every change they only count.
    ClipJournal::Lines m_lines;
    qint64 m_waitingBytes = 0;
    /// There was a change that no line can tell.
    bool m_mustRewrite = false;
    /// The files hold what was erased for good.
    bool m_mustErase = false;
    /// The files hold what was erased but may be restored.
    bool m_holdsRestorable = false;
    bool m_keepArrayAside = false;
    bool m_keepJournalAside = false;
    bool m_journalIsSpent = false;
    bool m_hasFailed = false;
};

} // namespace ostrelle
