#pragma once

#include <QList>
#include <QPersistentModelIndex>

class QAbstractItemView;

namespace ostrelle {

/// How clicks and keys select tiles: one, one more or less, or the range from where it began. Kept in the view's
/// selection model, for everyone to see.
class AssetSelection
{
public:
    explicit AssetSelection(QAbstractItemView &view);

    /// Sorted.
    QList<int> rows() const;
    bool contains(int row) const;
    /// The one that keys start from, or -1.
    int current() const;

    /// Only this one; ranges begin here.
    void choose(int row);
    /// In or out; ranges begin here.
    void toggle(int row);
    /// From where ranges begin to here.
    void extendTo(int row);
    void chooseAll();
    void clear();

private:
    QModelIndex index(int row) const;
    void setCurrent(int row);

    QAbstractItemView &m_view;
    QPersistentModelIndex m_anchor;
};

} // namespace ostrelle
