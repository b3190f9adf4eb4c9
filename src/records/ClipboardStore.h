#pragma once

#include "records/ClipItem.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

class QObject;

namespace ostrelle {

/// The history on the disk: `clipboard.json`, one compact JSON array with images inline, and beside it, while the array
/// is larger than kWholeRewriteLimit, an append-only journal of changes.
///
/// The caller keeps the list in memory and reports every change; the store writes on a thread of its own in the order
/// of the calls and never encodes again what it has written before. All calls from the main thread; none but load(),
/// flush() and close() waits for the disk.
class ClipboardStore
{
public:
    static constexpr qint64 kWholeRewriteLimit = 4 * 1024 * 1024;

    enum class Erasure {
        Undoable, ///< leaves memory and the list at once; its bytes may be brought back by restore() until settle()
        Final     ///< off the disk as soon as possible; whenSaved() and flush() acknowledge it
    };

    /// What the files in `folder` hold. Changes nothing, so whoever does not hold the lock of the folder can ask, also
    /// while another process writes. An undecodable file gives an empty list.
    static QList<ClipItem> read(const QString &folder);

    /// For whoever holds the lock of the folder.
    explicit ClipboardStore(const QString &folder);
    ~ClipboardStore();

    /// Reads array and journal, before anything else is asked. An undecodable file gives an empty list and is kept
    /// aside before the next write. Waits for the disk.
    QList<ClipItem> load();
    /// The same without waiting; changes may be reported from the answer on.
    void loadLater(const QObject *context, std::function<void(QList<ClipItem>)> answer);

    /// `image` holds the raw bytes of an Image item, else it is empty.
    void insertAtTop(const ClipItem &item, const QByteArray &image);
    void moveToTop(const QUuid &id, double date);
    void setPinned(const QUuid &id, bool pinned);
    /// Dropped by the limit: like Final, but not urgent.
    void trim(const QList<QUuid> &ids);
    void remove(const QList<QUuid> &ids, Erasure erasure);
    /// Brings back what was removed with Undoable since the last settle(), so that the list is `order` again.
    void restore(const QList<ClipItem> &items, const QList<QUuid> &order);
    /// What was removed can no longer be undone: its bytes leave the disk.
    void settle();
    /// Both at once, so that the files are written anew only once.
    void settleAndRemove(const QList<QUuid> &ids);
    /// Everything leaves the disk, whatever it was. The files are written anew in any case, so that undecodable ones
    /// are kept aside.
    void removeAll();
    /// Tries again what could not be written.
    void retry();
    /// Tells when saving begins to fail and when it works again, on the main thread. One observer.
    void observeSaving(const QObject *context, std::function<void(bool isFailing)> observer);

    /// Reads the raw bytes of an item's image off the main thread; nothing when it is gone or does not decode.
    void readImage(const QUuid &id, const QObject *context, std::function<void(std::optional<QByteArray>)> answer);
    /// Answers the first of `candidates` that has exactly these image bytes, reading no more than it must. Items that
    /// may still be brought back can be candidates as well.
    void findImage(const QByteArray &image, const QList<QUuid> &candidates, const QObject *context,
                   std::function<void(std::optional<QUuid>)> answer);

    /// Answers when every change so far is on the disk; false when the last write failed.
    void whenSaved(const QObject *context, std::function<void(bool isSaved)> answer);
    /// Waits until every change so far is on the disk; false when the last write failed.
    bool flush();
    /// Folds the journal and flushes: afterwards there is only `clipboard.json`.
    bool close();

private:
    struct Writer;
    std::unique_ptr<Writer> m_writer;
};

} // namespace ostrelle
