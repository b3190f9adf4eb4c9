#include "notch/ToolView.h"

namespace ostrelle {

QList<QWidget *> ToolView::headerActions()
{
    return {};
}

void ToolView::appeared()
{
}

} // namespace ostrelle
