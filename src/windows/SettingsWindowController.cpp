#include "windows/SettingsWindowController.h"

#include "core/ForegroundSession.h"
#include "notch/NotchController.h"
#include "platform/OrdinaryWindows.h"

#include <utility>

namespace ostrelle {

SettingsWindowController::SettingsWindowController(SettingsSurroundings around, NotchController &notch,
                                                   ForegroundSession &foreground, OrdinaryWindows &windows,
                                                   QObject *parent)
    : QObject(parent)
    , m_around(std::move(around))
    , m_notch(notch)
    , m_foreground(foreground)
    , m_windows(windows)
{
}

SettingsWindowController::~SettingsWindowController() = default;

void SettingsWindowController::show(SettingsSection section, const ActivationToken &token)
{
    m_notch.dismiss();
    if (!m_window) {
        m_foreground.begin();
        m_window = std::make_unique<SettingsWindow>(m_around, section);
        connect(m_window.get(), &SettingsWindow::closed, this, &SettingsWindowController::forgetWindow);
        placeOnScreen();
    }
    m_windows.present(*m_window, token);
}

/// In the middle of the screen that the notch is on, which is the one in use.
void SettingsWindowController::placeOnScreen()
{
    const std::optional<Screen> screen = m_notch.currentScreen();
    if (!screen)
        return;
    const QSizeF size(m_window->size());
    m_window->move((screen->frame.center() - QPointF(size.width() / 2, size.height() / 2)).toPoint());
}

void SettingsWindowController::forgetWindow()
{
    // A window can be asked to close more than once.
    m_window->disconnect(this);
    // It is the sender.
    m_window.release()->deleteLater();
    m_foreground.end();
}

} // namespace ostrelle
