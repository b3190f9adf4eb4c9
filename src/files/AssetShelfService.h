#pragma once

#include "files/PresenceQueue.h"
#include "records/JsonListStore.h"
#include "records/ListStep.h"
#include "records/ListUndo.h"
#include "records/ShelfItem.h"

#include <QBindable>
#include <QList>
#include <QObject>
#include <QProperty>
#include <QStringList>
#include <QUuid>

#include <functional>
#include <optional>

namespace ostrelle {

class AudioPreview;
class Haptics;

/// The shelf: files that wait between two programs, newest first, no path twice. Loads its store when made and then
/// drops, as soon as it is known, the entries whose files are gone; later they stay. Main thread; nothing here waits.
class AssetShelfService : public QObject
{
    Q_OBJECT
public:
    AssetShelfService(JsonListStore<ShelfItem> &store, FilePresence &presence, AudioPreview &preview, Haptics &haptics,
                      QObject *parent = nullptr);

    const QList<ShelfItem> &items() const;
    /// For observing.
    QBindable<QList<ShelfItem>> bindableItems();

    /// Puts those of `paths` (absolute, any form) on top that exist and are not there yet, the last one topmost. Before
    /// it returns when their existence is known, else as soon as it is; in any case after the additions before it.
    void add(const QStringList &paths);
    /// The same for paths that the caller has found to exist: before it returns.
    void addExisting(const QStringList &paths);
    /// Removes entries; one step of undo.
    void remove(const QList<QUuid> &ids);
    void clear();
    /// Removes everything for good, additions whose files are not known yet among it.
    void eraseAll();

    /// Answers when the list as it is now is on the disk, or that it cannot be written. Not when `context` is gone.
    void whenSaved(const QObject *context, std::function<void(bool isSaved)> answer);

    /// Whether the last remove() or clear() can be taken back: until lapse().
    bool canUndo() const;
    void undo();
    /// What was removed can no longer be brought back (the panel closed).
    void lapse();

Q_SIGNALS:
    /// How the list became what items() now is.
    void itemsChanged(const QList<ostrelle::ListStep> &steps);

private:
    void pruneMissing();
    void put(const QList<ShelfItem> &items);
    void removeUndoably(const QList<ShelfItem> &left);

    JsonListStore<ShelfItem> &m_store;
    FilePresence &m_presence;
    AudioPreview &m_preview;
    Haptics &m_haptics;
    PresenceQueue m_additions; ///< that are still being judged
    std::optional<ListUndo<ShelfItem>> m_undo;
    Q_OBJECT_BINDABLE_PROPERTY(AssetShelfService, QList<ShelfItem>, m_items)
};

} // namespace ostrelle
