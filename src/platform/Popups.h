#pragma once

#include <QPointF>

class QMenu;
class QWidget;

namespace ostrelle {

/// Every menu of the panel goes through here, so that it appears above the panel and works without a focused window.
class Popups
{
public:
    virtual ~Popups() = default;

    /// Opens `menu` at `position` in `anchor`'s coordinates; returns at once. The menu stays owned by the caller and
    /// must live until it is closed.
    virtual void openMenu(QMenu &menu, QWidget &anchor, const QPointF &position) = 0;
};

} // namespace ostrelle
