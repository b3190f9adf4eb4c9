#pragma once

#include <QWidget>

namespace ostrelle {

/// For the destructor of a window whose controls need a member of it to the last, as they need its FrameClock.
inline void deleteChildWidgets(const QWidget &window)
{
    // One at a time: a control takes what it has put on the window with it.
    while (const QWidget *child = window.findChild<QWidget *>(QString(), Qt::FindDirectChildrenOnly))
        delete child;
}

} // namespace ostrelle
