#pragma once

#include "records/ListStep.h"

#include <QList>
#include <QSet>
#include <QString>
#include <QUuid>

#include <utility>

namespace ostrelle {

/// What is needed to take back one removal or reordering in a list of records with ids and unique paths.
template <typename Record>
class ListUndo
{
public:
    /// `before` is the list before the edit, `after` the list right after it.
    ListUndo(QList<Record> before, const QList<Record> &after);

    /// `now`, which may have changed since the edit, without the edit: what the edit removed stands where it stood,
    /// unless its path was added again since, and the order is the one before. What was added since keeps its
    /// neighbour; what was changed since keeps its values; what was removed by others stays away.
    QList<Record> undone(const QList<Record> &now) const;
};

} // namespace ostrelle
