#pragma once

#include "foundation/Task.h"
#include "platform/ActivationToken.h"
#include "windows/onboarding/OnboardingSurroundings.h"
#include "windows/onboarding/OnboardingWindow.h"

#include <QObject>

#include <memory>

namespace ostrelle {

class ForegroundSession;
class NotchController;
class OrdinaryWindows;

/// Opens the window of the first run, of which there is at most one. However it is closed, the first run is completed.
/// Main thread.
class OnboardingWindowController : public QObject
{
    Q_OBJECT
public:
    OnboardingWindowController(OnboardingSurroundings around, NotchController &notch, ForegroundSession &foreground,
                               OrdinaryWindows &windows, QObject *parent = nullptr);
    ~OnboardingWindowController() override;

    /// Closes the notch and shows the window, from its first step on; one that is open comes to the front as it is.
    void show(const ActivationToken &token = {});
    /// The window, or null.
    const OnboardingWindow *window() const { return m_window.get(); }

private:
    void placeOnScreen();
    void forgetWindow();
    void finish();

    OnboardingSurroundings m_around;
    NotchController &m_notch;
    ForegroundSession &m_foreground;
    OrdinaryWindows &m_windows;
    std::unique_ptr<OnboardingWindow> m_window;
    QMetaObject::Connection m_handover; ///< of the keyboard, to the notch
    Task m_lastMoment;
};

} // namespace ostrelle
