#pragma once

#include "windows/SettingsPage.h"

namespace ostrelle {

/// Light or dark, and the notch's theme.
class AppearanceSection : public SettingsPage
{
    Q_OBJECT
public:
    AppearanceSection(const ControlContext &context, const SettingsSurroundings &around, QWidget *parent);

private:
    void addAppearance();
    void addThemes();

    SettingsStore &m_settings;
};

} // namespace ostrelle
