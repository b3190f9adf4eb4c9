#pragma once

#include "platform/ActivationToken.h"
#include "windows/SettingsSurroundings.h"
#include "windows/SettingsWindow.h"

#include <QObject>

#include <memory>

namespace ostrelle {

class ForegroundSession;
class NotchController;
class OrdinaryWindows;

/// Opens the settings window, of which there is at most one. Main thread.
class SettingsWindowController : public QObject
{
    Q_OBJECT
public:
    SettingsWindowController(SettingsSurroundings around, NotchController &notch, ForegroundSession &foreground,
                             OrdinaryWindows &windows, QObject *parent = nullptr);
    ~SettingsWindowController() override;

    /// Closes the notch and shows the window on `section`; one that is open comes to the front as it is.
    void show(SettingsSection section, const ActivationToken &token = {});
    /// The window, or null.
    const SettingsWindow *window() const { return m_window.get(); }

private:
    void placeOnScreen();
    void forgetWindow();

    SettingsSurroundings m_around;
    NotchController &m_notch;
    ForegroundSession &m_foreground;
    OrdinaryWindows &m_windows;
    std::unique_ptr<SettingsWindow> m_window;
};

} // namespace ostrelle
