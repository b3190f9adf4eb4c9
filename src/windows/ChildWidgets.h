#pragma once

#include <QWidget>

namespace ostrelle {

/// For the destructor of a window whose controls need a member of it to the last, as they need its FrameClock.
inline void deleteChildWidgets(const QWidget &window)
{
    qDeleteAll(window.findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly));
}

} // namespace ostrelle
