#pragma once

#include "records/ClipItem.h"

#include <QList>

namespace ostrelle {

/// The order in which the history is shown and numbered: pinned items first, newer dates first within each group.
/// False for equals, which keep the order of the list (use a stable sort).
bool isShownBefore(const ClipItem &a, const ClipItem &b);
QList<ClipItem> inDisplayOrder(QList<ClipItem> items);

} // namespace ostrelle
