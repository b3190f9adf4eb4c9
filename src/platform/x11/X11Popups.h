#pragma once

#include "platform/Popups.h"

namespace ostrelle {

/// The toolkit's menus are override-redirect, map above the panel and grab keyboard and pointer: they work on a panel
/// without the focus as they are.
class X11Popups final : public Popups
{
public:
    void openMenu(QMenu &menu, QWidget &anchor, const QPointF &position) override;
};

} // namespace ostrelle
