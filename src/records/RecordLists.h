#pragma once

#include "records/Project.h"
#include "records/ShelfItem.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QUuid>

#include <algorithm>

namespace ostrelle {

// The edits of the stored lists, as pure functions: the running program and the commands that edit a store by
// themselves share them.

/// `items` with a new entry on top for each of `paths` (absolute, any form) that is not listed yet, one after the
/// other: the last one ends on top.
QList<ShelfItem> withPaths(const QList<ShelfItem> &items, const QStringList &paths, double addedAt);

/// `projects` with a new entry at the end for each of `folders` (absolute, any form) that is not listed yet, named
/// after the folder.
QList<Project> withFolders(const QList<Project> &projects, const QStringList &folders);

/// The name an entry gets when the user asks for `name`: trimmed, or the folder's own when that leaves nothing.
QString projectName(const Project &project, const QString &name);

/// -1 when there is none.
template <typename Record>
int indexOf(const QList<Record> &records, const QUuid &id)
{
    const auto found =
        std::find_if(records.begin(), records.end(), [&](const Record &record) { return record.id == id; });
    return found == records.end() ? -1 : static_cast<int>(found - records.begin());
}

/// The destination that moved() needs for the element at `from` to stand at `to` afterwards.
constexpr int destinationOf(int from, int to)
{
    return to > from ? to + 1 : to;
}

/// The elements at `offsets` taken out and put back, in their relative order, before the element that was at
/// `destination`; the list's size means the end. Offsets outside the list are ignored.
template <typename Record>
QList<Record> moved(const QList<Record> &records, const QList<int> &offsets, int destination)
{
    QList<Record> above;
    QList<Record> taken;
    QList<Record> below;
    for (int i = 0; i < static_cast<int>(records.size()); ++i) {
        if (offsets.contains(i))
            taken.append(records[i]);
        else
            (i < destination ? above : below).append(records[i]);
    }
    return above + taken + below;
}

} // namespace ostrelle
