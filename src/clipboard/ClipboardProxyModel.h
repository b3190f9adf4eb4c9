#pragma once

#include "clipboard/ClipSearch.h"

#include <QSortFilterProxyModel>
#include <QUuid>

namespace ostrelle {

class ClipboardListModel;
struct ClipboardRow;

/// What the tool shows of the history: pinned items first, newer ones first, only those that match the search.
class ClipboardProxyModel : public QSortFilterProxyModel
{
    Q_OBJECT
public:
    explicit ClipboardProxyModel(ClipboardListModel &history, QObject *parent = nullptr);

    void setQuery(const QString &query);
    /// Within one search the rows come and go in several steps; until `searched` they are no results yet.
    bool isSearching() const { return m_isSearching; }

    ClipboardRow row(int index) const;
    QUuid idAt(int index) const;
    /// The index of the item, or an invalid one when it is not among the results.
    QModelIndex indexOf(const QUuid &id) const;

Q_SIGNALS:
    void searched();

protected:
    bool filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const override;
    bool lessThan(const QModelIndex &left, const QModelIndex &right) const override;

private:
    void search();

    ClipboardListModel &m_history;
    ClipSearch m_search;
    bool m_isSearching = false;
};

} // namespace ostrelle
