#pragma once

#include <QHash>
#include <QList>
#include <QUuid>

#include <algorithm>

namespace ostrelle {

/// One step on the way from a list of records to another, in the terms of a list model.
struct ListStep
{
    enum class Kind {
        Insert, ///< `count` rows from `at` are new; their records are those of the new list at the same places
        Remove, ///< `count` rows from `at` are gone
        Move,   ///< the row `from` went to `at`, which is above it
        Change  ///< the record at `at` has other values; `at` counts in the new list
    };

    Kind kind = Kind::Insert;
    int at = 0;
    int count = 1;
    int from = 0;

    friend bool operator==(const ListStep &, const ListStep &) = default;
};

/// The steps, to be applied in order, that make `after` of `before`: removals from the bottom, then insertions and
/// moves from the top, then changes. Records are known by their id. Applying them touches no row twice but for its
/// values.
template <typename Record>
QList<ListStep> listSteps(const QList<Record> &before, const QList<Record> &after);

} // namespace ostrelle
