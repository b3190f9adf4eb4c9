#pragma once

#include "notch/controls/ControlContext.h"
#include "records/SettingsSection.h"
#include "windows/SettingsSurroundings.h"

#include <QWidget>

namespace ostrelle {

class PageScroll;
class SettingsSidebar;

/// The content of the settings window: the sidebar and the page of the chosen section. Only that page exists.
class SettingsView : public QWidget
{
    Q_OBJECT
public:
    SettingsView(const ControlContext &context, SettingsSurroundings around, SettingsSection section, QWidget *parent);

    SettingsSection section() const { return m_section; }

protected:
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void showPage();
    QWidget &makePage();

    ControlContext m_context;
    SettingsSurroundings m_around;
    SettingsSection m_section;
    SettingsSidebar &m_sidebar;
    PageScroll *m_page = nullptr; ///< a child
};

} // namespace ostrelle
