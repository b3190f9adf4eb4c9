#pragma once

#include "records/RecentFile.h"

#include <QBindable>
#include <QList>
#include <QProperty>
#include <QString>

#include <optional>

namespace ostrelle {

class DefaultsDatabase;

/// The files that one tool has shown, newest first, no path twice; kept under a key of the defaults database as binary
/// data. A stored list that cannot be decoded counts as empty and stays until the next change. Main thread.
class RecentFiles
{
public:
    /// record() keeps at most `limit` files; a longer stored list is taken as it is. The database outlives this.
    RecentFiles(DefaultsDatabase &defaults, QString key, int limit);

    const QList<RecentFile> &items() const { return m_items.value(); }
    /// For observing.
    QBindable<QList<RecentFile>> bindableItems() { return &m_items; }

    /// Puts the file on top, with the present moment as its date; one that is listed moves there.
    void record(const QString &path, const QString &summary);
    /// Removes the file; one step of undo.
    void remove(const QString &path);
    /// Removes a file that is gone: nothing that anybody would want back.
    void removeMissing(const QString &path);
    /// One step of undo.
    void clear();

    /// Whether the last remove() or clear() can be taken back: until lapse().
    bool canUndo() const;
    void undo();
    /// What was removed can no longer be brought back (the panel closed).
    void lapse();

private:
    struct Removal
    {
        QList<RecentFile> before;
        QList<RecentFile> after;
    };

    QList<RecentFile> without(const QString &path) const;
    QList<RecentFile> undone(const Removal &removal) const;
    void removeUndoably(const QList<RecentFile> &left);
    void put(const QList<RecentFile> &items);

    DefaultsDatabase &m_defaults;
    QString m_key;
    int m_limit;
    std::optional<Removal> m_removal;
    QProperty<QList<RecentFile>> m_items;
};

} // namespace ostrelle
