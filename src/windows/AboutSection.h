#pragma once

#include "windows/SettingsPage.h"

namespace ostrelle {

/// What the program is, its updates and what it does with what it sees.
class AboutSection : public SettingsPage
{
    Q_OBJECT
public:
    AboutSection(const ControlContext &context, const SettingsSurroundings &around, QWidget *parent);

private:
    class Header;

    void addUpdates(const SettingsSurroundings &around);
    void addPrivacy();
    void addQuit(const std::function<void()> &quit);
};

} // namespace ostrelle
