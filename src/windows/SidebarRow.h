#pragma once

#include "notch/controls/NotchButton.h"
#include "records/SettingsSection.h"

namespace ostrelle {

/// One section in the sidebar.
class SidebarRow : public NotchButton
{
    Q_OBJECT
public:
    SidebarRow(const ControlContext &context, SettingsSection section, QWidget *parent);

    SettingsSection section() const { return m_section; }

protected:
    QRectF shape() const override;
    double cornerRadius() const override;
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    SettingsSection m_section;
};

} // namespace ostrelle
