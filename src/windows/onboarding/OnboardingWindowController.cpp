#include "windows/onboarding/OnboardingWindowController.h"

#include "core/ForegroundSession.h"
#include "core/SettingsStore.h"
#include "foundation/LargeBlocks.h"
#include "foundation/TaskScheduler.h"
#include "notch/NotchController.h"
#include "platform/OrdinaryWindows.h"
#include "windows/onboarding/OnboardingMeasures.h"

#include <algorithm>

namespace ostrelle {
namespace {

constexpr std::chrono::milliseconds kLastMoment{300};

} // namespace

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
    // One that was about to go stays after all.
    m_lastMoment.cancel();
    disconnect(m_handover);
    m_windows.present(*m_window, token);
}

/// In the middle of the screen that the notch is on, which is the one in use. On one that is too low for it its
/// buttons, which are at the bottom, are not cut off.
void OnboardingWindowController::placeOnScreen()
{
    const std::optional<Screen> screen = m_notch.currentScreen();
    if (!screen)
        return;
    const QRectF &frame = screen->frame;
    const double lowest = frame.y() + frame.height() - onboarding::kContent.height() / 2.0;
    m_window->centreOn({frame.center().x(), std::min(frame.center().y(), lowest)});
}

void OnboardingWindowController::forgetWindow()
{
    // A window can be asked to close more than once, and tells of its loss of the keyboard while it closes.
    m_window->disconnect(this);
    m_around.settings.setHasCompletedOnboarding(true);
    m_lastMoment.cancel();
    connect(m_window.get(), &QObject::destroyed, this, &giveBackFreeBlocks, Qt::QueuedConnection);
    // It is the sender.
    m_window.release()->deleteLater();
    m_foreground.end();
}

/// The window goes when the notch has taken the keyboard from it, or has not within a moment: the window manager hands
/// the keyboard of a window that closes to another one, and would take it from the notch again.
void OnboardingWindowController::finish()
{
    if (m_lastMoment.isPending())
        return;
    m_around.settings.setHasCompletedOnboarding(true);
    const auto close = [this] { m_window->close(); };
    m_handover = connect(m_window.get(), &OnboardingWindow::deactivated, this, close);
    m_lastMoment = m_around.scheduler.after(kLastMoment, m_window.get(), close);
    m_notch.present(std::nullopt, NotchController::Focus::Take, NotchController::Opening::Explicit);
}

} // namespace ostrelle
