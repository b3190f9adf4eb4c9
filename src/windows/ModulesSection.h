#pragma once

#include "windows/SettingsPage.h"

namespace ostrelle {

/// Which tools the notch shows, and in which order.
class ModulesSection : public SettingsPage
{
    Q_OBJECT
public:
    ModulesSection(const ControlContext &context, const SettingsSurroundings &around, QWidget *parent);
};

} // namespace ostrelle
