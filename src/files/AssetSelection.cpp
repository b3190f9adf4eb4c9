#include "files/AssetSelection.h"

#include <QAbstractItemModel>
#include <QAbstractItemView>
#include <QItemSelectionModel>

#include <algorithm>

namespace ostrelle {

AssetSelection::AssetSelection(QAbstractItemView &view)
    : m_view(view)
{
}

QModelIndex AssetSelection::index(int row) const
{
    return m_view.model()->index(row, 0);
}

QList<int> AssetSelection::rows() const
{
    QList<int> rows;
    for (const QModelIndex &index : m_view.selectionModel()->selectedIndexes())
        rows.append(index.row());
    std::sort(rows.begin(), rows.end());
    return rows;
}

bool AssetSelection::contains(int row) const
{
    return m_view.selectionModel()->isSelected(index(row));
}

int AssetSelection::current() const
{
    return m_view.selectionModel()->currentIndex().row();
}

void AssetSelection::setCurrent(int row)
{
    m_view.selectionModel()->setCurrentIndex(index(row), QItemSelectionModel::NoUpdate);
}

void AssetSelection::choose(int row)
{
    m_view.selectionModel()->setCurrentIndex(index(row), QItemSelectionModel::ClearAndSelect);
    m_anchor = index(row);
}

void AssetSelection::toggle(int row)
{
    m_view.selectionModel()->setCurrentIndex(index(row), QItemSelectionModel::Toggle);
    m_anchor = index(row);
}

void AssetSelection::extendTo(int row)
{
    if (!m_anchor.isValid()) {
        choose(row);
        return;
    }
    const int first = std::min(m_anchor.row(), row);
    const int last = std::max(m_anchor.row(), row);
    m_view.selectionModel()->select({index(first), index(last)}, QItemSelectionModel::ClearAndSelect);
    setCurrent(row);
}

void AssetSelection::chooseAll()
{
    const int count = m_view.model()->rowCount();
    if (count > 0)
        m_view.selectionModel()->select({index(0), index(count - 1)}, QItemSelectionModel::ClearAndSelect);
}

void AssetSelection::clear()
{
    m_view.selectionModel()->clearSelection();
}

} // namespace ostrelle
