#pragma once

#include "app/RequestRouter.h"
#include "platform/ActivationToken.h"
#include "records/SettingsSection.h"

#include <QObject>
#include <QPropertyNotifier>

#include <memory>
#include <optional>

namespace ostrelle {

class ControlServer;
class DesktopRequests;
class Services;

/// Starts the services in their order when the application runs, and performs the clean-up at its end.
class AppDelegate : public QObject
{
    Q_OBJECT
public:
    /// How the program was started.
    struct Start
    {
        bool isLocked = false; ///< false: the lock of the data folder cannot be taken
        bool openNotch = false;
        QString tool;                            ///< raw value, or empty for the selector
        std::optional<SettingsSection> settings; ///< opens the window
        bool openWelcome = false;                ///< the first run's window, also when it was completed
    };

    AppDelegate(Services &services, Start start, QObject *parent = nullptr);
    ~AppDelegate() override;

    void applicationDidFinishLaunching();
    /// The session is about to end, or may yet go on: nothing but what is unsaved is done.
    void commitData();
    /// Once, however the program ends: quit, a signal, the end of the session.
    void applicationWillTerminate();

protected:
    /// Ends the program at the application's Quit event, whoever sent it, without closing its windows as the toolkit
    /// would: closing is what somebody does to them, and completes the first run.
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    /// What was removed in the panel can be brought back only while it is open.
    void forgetUndo();
    void startCommands();
    /// As a menu of programs does.
    void activate(const ActivationToken &token);
    void saveWithoutDisplay();

    Services &m_services;
    Start m_start;
    RequestRouter m_router;
    std::unique_ptr<ControlServer> m_server;
    std::unique_ptr<DesktopRequests> m_desktop;
    QPropertyNotifier m_phaseNotifier;
    bool m_terminated = false;
};

} // namespace ostrelle
