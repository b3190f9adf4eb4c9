#pragma once

#include "windows/SettingsPage.h"

namespace ostrelle {

class SwitchButton;

/// How the notch behaves and moves.
class GeneralSection : public SettingsPage
{
    Q_OBJECT
public:
    GeneralSection(const ControlContext &context, const SettingsSurroundings &around, QWidget *parent);

protected:
    bool event(QEvent *event) override;

private:
    void addLaunchRow();
    void addHoverRow(Popups &popups);
    void addMotion();
    void showLaunch();
    void showFooter();

    SettingsStore &m_settings;
    LaunchAtLogin &m_launch;
    ShortcutService &m_shortcuts;
    SettingsGroup &m_behavior;
    SwitchButton *m_launchSwitch = nullptr;
};

} // namespace ostrelle
