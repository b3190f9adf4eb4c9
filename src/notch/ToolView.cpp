#include "notch/ToolView.h"

namespace ostrelle {

QList<QWidget *> ToolView::headerActions()
{
    return {};
}

QList<MenuEntry> ToolView::menuEntries()
{
    return {};
}

void ToolView::appeared()
{
}

bool ToolView::acceptsDrop(const QStringList &) const
{
    return false;
}

void ToolView::setDropTargeted(bool)
{
}

bool ToolView::dropFiles(const QStringList &)
{
    return false;
}

} // namespace ostrelle
