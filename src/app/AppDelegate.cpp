#include "app/AppDelegate.h"

#include "app/AutostartRequests.h"
#include "app/ClipboardRequests.h"
#include "app/ColorPickRequest.h"
#include "app/ColorRequests.h"
#include "app/ControlServer.h"
#include "app/DesktopActions.h"
#include "app/ForgetRequest.h"
#include "app/NotchRequests.h"
#include "app/ProjectsRequests.h"
#include "app/Services.h"
#include "app/SettingsRequests.h"
#include "app/ShelfRequests.h"
#include "app/ShortcutsRequests.h"
#include "app/StatusReport.h"
#include "app/UpdateRequests.h"
#include "clipboard/ClipboardService.h"
#include "core/SettingsStore.h"
#include "files/AssetShelfService.h"
#include "files/ProjectsService.h"
#include "foundation/AppPaths.h"
#include "foundation/DefaultsDatabase.h"
#include "foundation/Unwritable.h"
#include "inspectors/AudioInspector.h"
#include "inspectors/ColorService.h"
#include "inspectors/ImageInspector.h"
#include "notch/NotchController.h"
#include "notch/NotchPanel.h"
#include "notch/NotchViewModel.h"
#include "platform/ClipboardPort.h"
#include "platform/DesktopRequests.h"
#include "platform/Platform.h"
#include "records/ClipboardStore.h"
#include "shortcuts/ShortcutService.h"
#include "updates/UpdateService.h"
#include "windows/SettingsWindowController.h"
#include "windows/onboarding/OnboardingWindowController.h"

#include <QApplication>
#include <QEvent>
#include <QLoggingCategory>

namespace ostrelle {

namespace {

Q_LOGGING_CATEGORY(lcApp, "ostrelle.app", QtWarningMsg)

} // namespace

AppDelegate::AppDelegate(Services &services, Start start, QObject *parent)
    : QObject(parent)
    , m_services(services)
    , m_start(std::move(start))
{
}

AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationDidFinishLaunching()
{
    QCoreApplication::instance()->installEventFilter(this);
    if (!reportUnwritable(AppPaths::support()) && !m_start.isLocked)
        qCWarning(lcApp, "%s cannot be locked: another program may change what is kept there",
                  qUtf8Printable(AppPaths::support()));
    SettingsStore &settings = m_services.settings();
    m_services.platform().setDisplayLostHandler([this] { saveWithoutDisplay(); });
    m_services.controller().start(m_services.panel());
    m_services.dropDelegate();
    m_services.shortcuts().start();
    if (settings.clipboardEnabled())
        m_services.clipboard().start();
    m_phaseNotifier = m_services.viewModel().bindablePhase().addNotifier([this] { forgetUndo(); });
    startCommands();
    if (m_start.openWelcome || !settings.hasCompletedOnboarding())
        m_services.onboardingWindow().show();
    if (m_start.openNotch)
        m_services.controller().present(moduleFromRawValue(m_start.tool), NotchController::Focus::Take,
                                        NotchController::Opening::Explicit);
    if (m_start.settings)
        m_services.settingsWindow().show(*m_start.settings);
    m_services.updates().startBackgroundChecks();
}

bool AppDelegate::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::Quit || watched != QCoreApplication::instance())
        return QObject::eventFilter(watched, event);
    for (QWidget *window : QApplication::topLevelWidgets())
        window->hide();
    QCoreApplication::exit();
    return true;
}

void AppDelegate::forgetUndo()
{
    if (m_services.viewModel().phase() == Phase::Expanded)
        return;
    m_services.clipboard().settle();
    m_services.shelf().lapse();
    m_services.projects().lapse();
    m_services.imageInspector().recents().lapse();
    m_services.audioInspector().recents().lapse();
    m_services.colors().lapse();
}

void AppDelegate::startCommands()
{
    addNotchRequests(
        m_router, m_services.controller(), [this] { return statusReport(m_services); },
        [] { QCoreApplication::quit(); });
    addClipboardRequests(m_router, m_services.clipboard());
    addShelfRequests(m_router, m_services.shelf());
    addProjectsRequests(m_router, m_services.projects(), m_services.filePresence(),
                        m_services.platform().fileOpening());
    addColorRequests(m_router, m_services.colors(), m_services.defaults());
    addColorPickRequest(m_router, m_services.colors());
    addSettingsRequests(m_router, m_services.settings(), m_services.defaults(),
                        [this](SettingsSection section) { m_services.settingsWindow().show(section); });
    addWelcomeRequest(m_router, [this] { m_services.onboardingWindow().show(); });
    addAutostartRequests(m_router, m_services.launchAtLogin());
    addShortcutsRequests(m_router, m_services.shortcuts(), m_services.defaults());
    addUpdateRequests(m_router, m_services.updates());
    addForgetRequest(m_router, m_services);
    m_server = std::make_unique<ControlServer>(m_router);
    m_server->listen(AppPaths::controlSocket());
    m_desktop = answerDesktop(m_router, m_services.shortcutActions(),
                              {.activate = [this](const ActivationToken &token) { activate(token); },
                               .openSettings =
                                   [this](const ActivationToken &token) {
                                       m_services.settingsWindow().show(SettingsSection::General, token);
                                   }});
    connect(&m_services.panel(), &NotchPanel::quitRequested, this, [] { QCoreApplication::quit(); });
    connect(&m_services.panel(), &NotchPanel::settingsRequested, this,
            [this] { m_services.settingsWindow().show(SettingsSection::General); });
    connect(&m_services.panel(), &NotchPanel::welcomeRequested, this, [this] { m_services.onboardingWindow().show(); });
    connect(&m_services.panel(), &NotchPanel::settingsButtonPressed, this, [this] {
        const bool hasUpdate = std::holds_alternative<updateStates::Available>(m_services.updates().state());
        m_services.settingsWindow().show(hasUpdate ? SettingsSection::About : SettingsSection::General);
    });
}

void AppDelegate::activate(const ActivationToken &token)
{
    // Whoever starts it for the first time from a menu wants to see this, and nothing above it.
    if (m_services.onboardingWindow().window() != nullptr)
        m_services.onboardingWindow().show(token);
    else
        m_services.controller().present(std::nullopt, NotchController::Focus::Take, NotchController::Opening::Explicit,
                                        token);
}

void AppDelegate::commitData()
{
    m_services.clipboardStore().flush();
    m_services.shelfStore().flush();
    m_services.projectsStore().flush();
    m_services.defaults().flush();
}

void AppDelegate::applicationWillTerminate()
{
    if (m_terminated)
        return;
    // Whoever starts from now on waits for the lock of the data folder and is the next program.
    if (m_server)
        m_server->stopListening();
    m_desktop.reset();
    saveWithoutDisplay();
    // A command whose erasure has just been written still gets its answer.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::MetaCall);
    m_services.platform().clipboard().handOver();
}

void AppDelegate::saveWithoutDisplay()
{
    m_terminated = true;
    m_services.clipboard().finishLoading();
    // Handing the clipboard over takes a while, in which nothing more may be recorded.
    m_services.clipboard().stop();
    if (m_services.settings().clearOnQuit())
        m_services.clipboard().eraseAll(/*includingPinned=*/false);
    m_services.clipboard().settle();
    m_services.clipboardStore().close();
    m_services.shelfStore().flush();
    m_services.projectsStore().flush();
    m_services.defaults().flush();
}

} // namespace ostrelle
