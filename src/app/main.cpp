#include "app/AppDelegate.h"
#include "app/AutostartRun.h"
#include "app/ColorPickRun.h"
#include "app/DoctorRun.h"
#include "app/LogFormat.h"
#include "app/Services.h"
#include "app/TerminationSignals.h"
#include "app/UpdateCheckRun.h"
#include "foundation/AppPaths.h"
#include "foundation/CoreDumps.h"
#include "foundation/DataFolderLock.h"
#include "foundation/LargeBlocks.h"
#include "platform/KeyboardLayout.h"
#include "platform/PlatformStart.h"
#include "records/KeyNames.h"
#include "updates/UpdateDeployment.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QSessionManager>

#include <csignal>
#include <cstdio>
#include <cstring>

namespace {

using namespace ostrelle;

constexpr int kFailed = 1;

int failWith(const QString &message)
{
    std::fprintf(stderr, "ostrelle: %s\n", qUtf8Printable(message));
    return kFailed;
}

/// For the command `ostrelle`, which links nothing that knows keyboards.
int printKeyNames()
{
    const QByteArray names = encodedKeyNames(KeyboardLayout::currentKeyNames());
    return std::puts(names.constData()) < 0 ? kFailed : 0;
}

UpdateDeployment deployment()
{
    return {QUrl(QStringLiteral(OSTRELLE_UPDATE_FEED)), QUrl(QStringLiteral(OSTRELLE_HOME_PAGE)),
            QStringLiteral(OSTRELLE_VERSION)};
}

/// The arguments that the command `ostrelle` passes; started by hand, the program takes the lock by itself.
struct StartArguments
{
    std::optional<QString> problem;
    std::optional<DataFolderLock> lock;
    std::optional<ColorFormat> colorPick; ///< the mode without a notch
    AppDelegate::Start start;
};

StartArguments parse(const QStringList &arguments)
{
    StartArguments result;
    QCommandLineParser parser;
    const QCommandLineOption lockOption(QStringLiteral("lock-descriptor"), {}, QStringLiteral("fd"));
    const QCommandLineOption openOption(QStringLiteral("open"), {}, QStringLiteral("tool"));
    const QCommandLineOption pickOption(QStringLiteral("pick-color"), {}, QStringLiteral("format"));
    const QCommandLineOption settingsOption(QStringLiteral("settings"), {}, QStringLiteral("section"));
    const QCommandLineOption welcomeOption(QStringLiteral("welcome"));
    parser.addOptions({lockOption, openOption, pickOption, settingsOption, welcomeOption});
    if (!parser.parse(arguments)) {
        result.problem = parser.errorText();
        return result;
    }
    if (parser.isSet(pickOption)) {
        result.colorPick = colorFormatFromName(parser.value(pickOption)).value_or(ColorFormat::Hex);
        return result;
    }
    result.start.openNotch = parser.isSet(openOption);
    result.start.tool = parser.value(openOption);
    result.start.openWelcome = parser.isSet(welcomeOption);
    if (parser.isSet(settingsOption))
        result.start.settings =
            settingsSectionFromRawValue(parser.value(settingsOption)).value_or(SettingsSection::General);
    if (parser.isSet(lockOption)) {
        const int descriptor = parser.value(lockOption).toInt();
        if (descriptor >= 0)
            result.lock = DataFolderLock::adopt(descriptor);
        return result;
    }
    DataFolderLock::Failure failure{};
    result.lock = DataFolderLock::tryTake(AppPaths::support(), &failure);
    if (!result.lock && failure == DataFolderLock::Failure::HeldByOther)
        result.problem = QStringLiteral("already running; use the command ostrelle to talk to it");
    return result;
}

} // namespace

int main(int argc, char **argv)
{
    forbidCoreDumps();
    giveBackLargeBlocks();
    // A limit on file sizes makes a write fail, which the stores survive; the signal would end the program.
    std::signal(SIGXFSZ, SIG_IGN);
    // Nor does a line for a terminal that has gone. (QProcess gives its children the usual handling again.)
    std::signal(SIGPIPE, SIG_IGN);
    installLogFormat();
    if (argc == 2 && std::strcmp(argv[1], "--key-names") == 0)
        return printKeyNames();
    if (isAutostartRun(argc, argv))
        return runAutostartOnce(argc, argv);
    if (isUpdateCheck(argc, argv))
        return checkForUpdateOnce(argc, argv, deployment());
    if (isDoctorRun(argc, argv))
        return runDoctor(argc, argv);
    QString problem;
    const auto backend = PlatformStart::prepare(&problem);
    if (!backend)
        return failWith(problem);

    QCoreApplication::setApplicationName(QStringLiteral("Ostrelle"));
    QCoreApplication::setApplicationVersion(QStringLiteral(OSTRELLE_VERSION));
    QGuiApplication::setDesktopFileName(QStringLiteral(OSTRELLE_APPLICATION_ID));
    QGuiApplication::setQuitOnLastWindowClosed(false);
    QApplication application(argc, argv);
    // A steady caret: a blinking one wakes the program nine times a second.
    QApplication::setCursorFlashTime(0);
    StartArguments arguments = parse(QCoreApplication::arguments());
    if (arguments.problem)
        return failWith(*arguments.problem);
    if (arguments.colorPick)
        return runColorPick(*backend, *arguments.colorPick);

    // Before the services, so that the last of them has written when the lock goes.
    const std::optional<DataFolderLock> lock = std::move(arguments.lock);
    arguments.start.isLocked = lock.has_value();
    Services services(*backend, QCoreApplication::applicationDirPath() + QStringLiteral("/ostrelle-keeper"),
                      deployment());
    AppDelegate delegate(services, std::move(arguments.start));
    const TerminationSignals signals_;
    QObject::connect(&signals_, &TerminationSignals::received, &application, &QCoreApplication::quit);
    QObject::connect(&application, &QCoreApplication::aboutToQuit, &delegate, &AppDelegate::applicationWillTerminate);
    // A session that ends asks first; nothing needs to be asked back.
    QObject::connect(&application, &QGuiApplication::commitDataRequest, &delegate,
                     [&delegate](QSessionManager &session) {
                         session.setRestartHint(QSessionManager::RestartNever);
                         delegate.commitData();
                     });
    delegate.applicationDidFinishLaunching();
    return QApplication::exec();
}
