#include "platform/x11/X11Popups.h"

#include <QMenu>

namespace ostrelle {

void X11Popups::openMenu(QMenu &menu, QWidget &anchor, const QPointF &position)
{
    menu.popup(anchor.mapToGlobal(position).toPoint());
}

} // namespace ostrelle
