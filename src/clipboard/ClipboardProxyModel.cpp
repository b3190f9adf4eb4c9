#include "clipboard/ClipboardProxyModel.h"

#include "clipboard/ClipboardListModel.h"
#include "records/ClipOrder.h"

namespace ostrelle {

ClipboardProxyModel::ClipboardProxyModel(ClipboardListModel &history, QObject *parent)
    : QSortFilterProxyModel(parent)
    , m_history(history)
{
    connect(&m_search, &ClipSearch::found, this, &ClipboardProxyModel::search);
    setSourceModel(&history);
    sort(0);
}

void ClipboardProxyModel::setQuery(const QString &query)
{
    if (m_search.setQuery(query))
        search();
}

void ClipboardProxyModel::search()
{
    m_isSearching = true;
    invalidateFilter();
    m_isSearching = false;
    Q_EMIT searched();
}

ClipboardRow ClipboardProxyModel::row(int index) const
{
    return this->index(index, 0).data(ClipboardListModel::kRowRole).value<ClipboardRow>();
}

QUuid ClipboardProxyModel::idAt(int index) const
{
    return m_history.item(mapToSource(this->index(index, 0)).row()).id;
}

QModelIndex ClipboardProxyModel::indexOf(const QUuid &id) const
{
    for (int i = 0; i < rowCount(); ++i) {
        if (idAt(i) == id)
            return index(i, 0);
    }
    return {};
}

bool ClipboardProxyModel::filterAcceptsRow(int sourceRow, const QModelIndex &) const
{
    return m_search.matches(m_history.item(sourceRow));
}

bool ClipboardProxyModel::lessThan(const QModelIndex &left, const QModelIndex &right) const
{
    const ClipItem &a = m_history.item(left.row());
    const ClipItem &b = m_history.item(right.row());
    if (isShownBefore(a, b))
        return true;
    return !isShownBefore(b, a) && left.row() < right.row();
}

} // namespace ostrelle
