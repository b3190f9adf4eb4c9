#pragma once

#include "platform/Popups.h"

#include <QMenu>
#include <QPointer>

namespace ostrelle {

/// Opens menus offscreen and remembers the last one.
class FakePopups final : public Popups
{
public:
    FakePopups();
    ~FakePopups() override;
    FakePopups(const FakePopups &) = delete;
    FakePopups &operator=(const FakePopups &) = delete;

    void openMenu(QMenu &menu, QWidget &anchor, const QPointF &position) override;

    /// The menu opened last, while it lives.
    QMenu *menu() const { return m_menu; }
    QPointF position() const { return m_position; }
    int count() const { return m_count; }

private:
    QPointer<QMenu> m_menu;
    QPointF m_position;
    int m_count = 0;
    bool m_hasInstalledHandler = false;
};

} // namespace ostrelle
