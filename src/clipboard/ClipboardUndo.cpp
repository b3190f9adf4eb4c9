#include "clipboard/ClipboardUndo.h"

#include <algorithm>
#include <utility>

namespace ostrelle {

ClipboardUndo::ClipboardUndo(const QList<ClipItem> &before, QList<ClipItem> removed)
    : m_removed(std::move(removed))
{
    int index = 0;
    for (const ClipItem &item : before)
        m_before.insert(item.id, {index++, item.date});
}

void ClipboardUndo::forget(const QUuid &id)
{
    m_removed.removeIf([&](const ClipItem &item) { return item.id == id; });
}

int ClipboardUndo::place(const ClipItem &removed, const QList<ClipItem> &now) const
{
    const int index = m_before.value(removed.id).index;
    const auto follower = std::find_if(now.begin(), now.end(), [&](const ClipItem &item) {
        const auto before = m_before.constFind(item.id);
        return before != m_before.constEnd() && before->index > index && before->date == item.date;
    });
    return static_cast<int>(follower - now.begin());
}

} // namespace ostrelle
