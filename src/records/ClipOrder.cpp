#include "records/ClipOrder.h"

#include <algorithm>

namespace ostrelle {

bool isShownBefore(const ClipItem &a, const ClipItem &b)
{
    if (a.pinned != b.pinned)
        return a.pinned;
    return a.date > b.date;
}

QList<ClipItem> inDisplayOrder(QList<ClipItem> items)
{
    std::stable_sort(items.begin(), items.end(), isShownBefore);
    return items;
}

} // namespace ostrelle
