#pragma once

#include "records/ListStep.h"

#include <QAbstractListModel>
#include <QList>
#include <QSet>
#include <QStringList>

#include <utility>

namespace ostrelle {

/// The rows of a list model over records that are known by ids. A list of its own: while it follows another list step
/// by step, views ask for the states between.
template <typename Record>
class RecordListModel : public QAbstractListModel
{
public:
    int rowCount(const QModelIndex &parent = {}) const override
    {
        return parent.isValid() ? 0 : static_cast<int>(m_records.size());
    }

protected:
    RecordListModel(QList<Record> records, QObject *parent)
        : QAbstractListModel(parent)
        , m_records(std::move(records))
    {
    }

    const QList<Record> &records() const { return m_records; }

    /// Does one of the steps that lead to `after`.
    void apply(const ListStep &step, const QList<Record> &after)
    {
        const int last = step.at + step.count - 1;
        switch (step.kind) {
        case ListStep::Kind::Insert:
            beginInsertRows({}, step.at, last);
            m_records.insert(step.at, step.count, Record());
            for (int row = step.at; row <= last; ++row)
                m_records[row] = after.at(row);
            endInsertRows();
            break;
        case ListStep::Kind::Remove:
            beginRemoveRows({}, step.at, last);
            m_records.remove(step.at, step.count);
            endRemoveRows();
            break;
        case ListStep::Kind::Move:
            beginMoveRows({}, step.from, step.from, {}, step.at > step.from ? step.at + 1 : step.at);
            m_records.move(step.from, step.at);
            endMoveRows();
            break;
        case ListStep::Kind::Change:
            m_records[step.at] = after.at(step.at);
            Q_EMIT dataChanged(index(step.at), index(step.at));
            break;
        }
    }

    /// Something else about the rows for which `isChanged` holds is new; neighbours are told of together.
    template <typename IsChanged>
    void tellChanged(IsChanged isChanged)
    {
        int first = -1;
        for (int row = 0; row <= m_records.size(); ++row) {
            const bool changed = row < m_records.size() && isChanged(m_records.at(row));
            if (changed && first < 0)
                first = row;
            else if (!changed && first >= 0)
                Q_EMIT dataChanged(index(std::exchange(first, -1)), index(row - 1));
        }
    }

private:
    QList<Record> m_records;
};

} // namespace ostrelle
