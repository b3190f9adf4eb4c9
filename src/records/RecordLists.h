#pragma once

#include "records/Project.h"
#include "records/ShelfItem.h"

#include <QList>
#include <QString>
#include <QStringList>

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

/// The elements at `offsets` taken out and put back, in their relative order, before the element that was at
/// `destination`; the list's size means the end. Offsets outside the list are ignored.
template <typename Record>
QList<Record> moved(const QList<Record> &records, const QList<int> &offsets, int destination);

} // namespace ostrelle
