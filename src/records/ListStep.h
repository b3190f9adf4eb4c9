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
        Move,   ///< the row `from` is taken out and then put in at `at`
        Change  ///< the record at `at` of the new list has other values
    };

    Kind kind = Kind::Insert;
    int at = 0;
    int count = 1;
    int from = 0; ///< Move

    friend bool operator==(const ListStep &, const ListStep &) = default;
};

/// The steps, to be applied in order, that make `after` of `before`: removals from the bottom, then insertions and
/// moves from the top, then changes. Records are known by their ids, which are unique.
template <typename Record>
QList<ListStep> listSteps(const QList<Record> &before, const QList<Record> &after)
{
    using Kind = ListStep::Kind;
    QHash<QUuid, int> places;
    for (int i = 0; i < static_cast<int>(after.size()); ++i)
        places.insert(after[i].id, i);

    QList<ListStep> steps;
    QHash<QUuid, Record> old;
    QList<QUuid> rest; // the rows below those that are right already
    for (int i = static_cast<int>(before.size()) - 1; i >= 0; --i) {
        if (places.contains(before[i].id)) {
            old.insert(before[i].id, before[i]);
            rest.append(before[i].id);
        } else if (!steps.isEmpty() && steps.last().at == i + 1) {
            steps.last().at = i;
            ++steps.last().count;
        } else {
            steps.append({Kind::Remove, i});
        }
    }
    std::reverse(rest.begin(), rest.end());

    for (int i = 0; i < static_cast<int>(after.size()); ++i) {
        const QUuid id = after[i].id;
        if (!old.contains(id)) {
            if (!steps.isEmpty() && steps.last().kind == Kind::Insert && steps.last().at + steps.last().count == i)
                ++steps.last().count;
            else
                steps.append({Kind::Insert, i});
            continue;
        }
        if (rest.size() > 1 && rest[1] == id) {
            // One row went down: that is one move, not one of every row it passed.
            int at = places[rest.first()] - 1;
            while (!old.contains(after[at].id))
                --at;
            const int passed = static_cast<int>(rest.indexOf(after[at].id));
            steps.append({Kind::Move, i + passed, 1, i});
            rest.move(0, passed);
        } else if (rest.first() != id) {
            const int from = static_cast<int>(rest.indexOf(id));
            steps.append({Kind::Move, i, 1, i + from});
            rest.move(from, 0);
        }
        rest.removeFirst();
    }

    for (int i = 0; i < static_cast<int>(after.size()); ++i) {
        const auto found = old.constFind(after[i].id);
        if (found != old.constEnd() && !(*found == after[i]))
            steps.append({Kind::Change, i});
    }
    return steps;
}

} // namespace ostrelle
