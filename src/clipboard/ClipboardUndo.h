#pragma once

#include "records/ClipItem.h"

#include <QHash>
#include <QList>

namespace ostrelle {

/// What one erasure took, and where it stood.
class ClipboardUndo
{
public:
    /// `before` is the list before the erasure, `removed` what is missing after it.
    ClipboardUndo(const QList<ClipItem> &before, QList<ClipItem> removed);

    /// In list order.
    const QList<ClipItem> &removed() const { return m_removed; }
    /// An equal copy was made since: the item would stand there twice.
    void forget(const QUuid &id);
    /// The place of a removed item in the list as it is now: before everything that stood after it and was not copied
    /// again since.
    int place(const ClipItem &removed, const QList<ClipItem> &now) const;

private:
    struct Before
    {
        int index = 0;
        double date = 0;
    };

    QList<ClipItem> m_removed;
    QHash<QUuid, Before> m_before;
};

} // namespace ostrelle
