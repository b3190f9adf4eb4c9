#include "windows/onboarding/OnboardingWindowController.h"

#include "core/ForegroundSession.h"
#include "core/SettingsStore.h"
#include "notch/NotchController.h"
#include "platform/OrdinaryWindows.h"
#include "windows/onboarding/OnboardingMeasures.h"

namespace ostrelle {

OnboardingWindowController::OnboardingWindowController(OnboardingSurroundings around, NotchController &notch,
                                                       ForegroundSession &foreground, OrdinaryWindows &windows,
                                                       QObject *parent)
    : QObject(parent)
    , m_around(around)
    , m_notch(notch)
    , m_foreground(foreground)
    , m_windows(windows)
{
}

OnboardingWindowController::~OnboardingWindowController() = default;

void OnboardingWindowController::show(const ActivationToken &token)
{
    m_notch.dismiss();
    if (!m_window) {
        m_foreground.begin();
        m_window = std::make_unique<OnboardingWindow>(m_around, m_windows);
        connect(m_window.get(), &OnboardingWindow::closed, this, &OnboardingWindowController::forgetWindow);
        connect(m_window.get(), &OnboardingWindow::finished, this, &OnboardingWindowController::finish);
        placeOnScreen();
    }
    m_windows.present(*m_window, token);
}

/// In the middle of the screen that the notch is on, which is the one in use.
void OnboardingWindowController::placeOnScreen()
{
    const std::optional<Screen> screen = m_notch.currentScreen();
    if (!screen)
        return;
    const QPointF middle = QRectF(onboarding::contentRect()).center();
    m_window->move((screen->frame.center() - middle).toPoint());
}

void OnboardingWindowController::forgetWindow()
{
    m_around.settings.setHasCompletedOnboarding(true);
    // It is the sender.
    m_window.release()->deleteLater();
    m_foreground.end();
}

void OnboardingWindowController::finish()
{
    m_window->close();
    m_notch.present(std::nullopt, NotchController::Focus::Take, NotchController::Opening::Explicit);
}

} // namespace ostrelle
