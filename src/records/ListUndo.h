#pragma once

#include <QHash>
#include <QList>
#include <QSet>
#include <QString>
#include <QUuid>

#include <algorithm>
#include <utility>

namespace ostrelle {

/// What is needed to take back one removal or reordering in a list of records with unique ids and paths.
template <typename Record>
class ListUndo
{
public:
    /// `before` is the list before the edit, `after` the list right after it.
    ListUndo(QList<Record> before, const QList<Record> &after)
        : m_before(std::move(before))
    {
        for (const Record &record : m_before)
            m_removed.insert(record.id);
        for (const Record &record : after)
            m_removed.remove(record.id);
    }

    const QList<Record> &before() const { return m_before; }

    /// `now`, which may have changed since the edit, without the edit: what the edit removed stands where it stood,
    /// unless its path was added again since, and the order is the one before. What was added since keeps its end of
    /// the list, or its upper neighbour; what was changed since keeps its values; what went since stays away.
    QList<Record> undone(const QList<Record> &now) const
    {
        QHash<QUuid, Record> present;
        QSet<QString> paths;
        for (const Record &record : now) {
            present.insert(record.id, record);
            paths.insert(record.path);
        }
        QList<Record> result;
        QSet<QUuid> old;
        for (const Record &record : m_before) {
            old.insert(record.id);
            if (present.contains(record.id))
                result.append(present[record.id]);
            else if (m_removed.contains(record.id) && !paths.contains(record.path))
                result.append(record);
        }
        addNew(result, now, old);
        return result;
    }

private:
    static void addNew(QList<Record> &result, const QList<Record> &now, const QSet<QUuid> &old)
    {
        const auto isOld = [&](const Record &record) { return old.contains(record.id); };
        const auto lastOld = std::find_if(now.rbegin(), now.rend(), isOld).base();
        qsizetype place = 0;
        for (auto record = now.begin(); record != now.end(); ++record) {
            if (isOld(*record)) {
                place = 1 + (std::find_if(result.begin(), result.end(),
                                          [&](const Record &other) { return other.id == record->id; }) -
                             result.begin());
                continue;
            }
            if (record >= lastOld && lastOld != now.begin())
                place = result.size();
            result.insert(place++, *record);
        }
    }

    QList<Record> m_before;
    QSet<QUuid> m_removed;
};

} // namespace ostrelle
