#include "app/DoctorRun.h"

#include "app/DesktopReport.h"
#include "app/PortalReport.h"
#include "foundation/AppPaths.h"
#include "foundation/SystemTaskScheduler.h"
#include "foundation/UnixSocket.h"
#include "media_client/KernelConfinement.h"
#include "media_client/Playback.h"
#include "media_client/SoundServerTrial.h"
#include "platform/BusServices.h"
#include "platform/LoginItem.h"
#include "platform/PanelHost.h"
#include "platform/Platform.h"
#include "platform/PlatformStart.h"

#include <QApplication>
#include <QEventLoop>
#include <QJsonDocument>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string_view>

namespace ostrelle {
namespace {

using namespace std::chrono_literals;
using State = DesktopFinding::State;

/// What the running program answers to `status`; empty when none does.
QJsonObject runningStatus()
{
    const FileDescriptor program = UnixSocket::connectTo(AppPaths::controlSocket());
    if (!program || !UnixSocket::isSameUser(program.get()) ||
        !UnixSocket::sendLine(program.get(), R"({"verb":"status"})", 5s))
        return {};
    const auto answer = UnixSocket::receiveLine(program.get(), 5s, qsizetype{1024} * 1024);
    return QJsonDocument::fromJson(answer.value_or(QByteArray())).object()[u"result"].toObject();
}

QList<DesktopFinding> displayFindings(Platform &platform)
{
    const PanelHost &host = platform.panelHost();
    const bool isBlurred = host.glass() == PanelHost::Glass::Compositor;
    return {{QStringLiteral("display"), State::Works, QStringLiteral("The notch is shown on X11.")},
            {QStringLiteral("compositor"), host.hasCompositor() ? State::Works : State::FallsBack,
             host.hasCompositor() ? QStringLiteral("The edges of the panel are soft.")
                                  : QStringLiteral("There is no compositor: the panel is cut out with hard edges.")},
            {QStringLiteral("blur"), isBlurred ? State::Works : State::FallsBack,
             isBlurred ? QStringLiteral("The compositor blurs what is behind the panel.")
                       : QStringLiteral("A picture of what was behind the panel when it opened is blurred instead.")}};
}

/// What the sound server says to a player; nothing when there is no player to send.
std::optional<SoundServerAnswer> soundServerAnswer(const QString &programs)
{
    if (!Playback::isInstalled(programs))
        return std::nullopt;
    SystemTaskScheduler scheduler;
    QEventLoop loop;
    std::optional<SoundServerAnswer> told;
    const SoundServerTrial trial(scheduler, Playback::usualPlayer(programs), [&](SoundServerAnswer answer) {
        told = answer;
        loop.quit();
    });
    loop.exec();
    return told;
}

DesktopFinding loginFinding(const QString &programs)
{
    const auto item =
        LoginItem::create(QStringLiteral(OSTRELLE_APPLICATION_ID), programs + QStringLiteral("/ostrelle"));
    const QString name = QStringLiteral("autostart");
    switch (item->status()) {
    case LoginItem::Status::Enabled:
        return {name, State::Works, QStringLiteral("The program starts with the session.")};
    case LoginItem::Status::RequiresApproval:
        return {name, State::FallsBack,
                QStringLiteral("The desktop's settings keep the program from starting with the session.")};
    case LoginItem::Status::NotRegistered:
        return {name, State::Works, QStringLiteral("The program does not start with the session, as it was told.")};
    case LoginItem::Status::NotFound:
        break;
    }
    return {name, State::Unknown, QStringLiteral("Whether the program starts with the session is not known here.")};
}

int print(const DesktopReport &report, bool asJson)
{
    const QByteArray text =
        asJson ? QJsonDocument(report.toJson()).toJson(QJsonDocument::Compact) + '\n' : report.text().toUtf8();
    const bool isPrinted = std::fputs(text.constData(), stdout) >= 0 && std::fflush(stdout) == 0;
    return isPrinted && report.isComplete() ? EXIT_SUCCESS : EXIT_FAILURE;
}

} // namespace

bool isDoctorRun(int argc, char **argv)
{
    return argc > 1 && std::string_view(argv[1]) == "--doctor";
}

int runDoctor(int argc, char **argv)
{
    const bool asJson = argc > 2 && std::string_view(argv[2]) == "--json";
    QString problem;
    const auto backend = PlatformStart::prepare(&problem);
    const auto application = backend ? std::unique_ptr<QCoreApplication>(std::make_unique<QApplication>(argc, argv))
                                     : std::make_unique<QCoreApplication>(argc, argv);
    const QString programs = QCoreApplication::applicationDirPath();
    const auto platform = backend ? Platform::create(*backend, QString()) : nullptr;
    if (backend && !platform)
        problem = QStringLiteral("The desktop cannot be reached.");
    const BusServices services = BusServices::look();
    DesktopReport report;
    report.findings = platform ? displayFindings(*platform)
                               : QList<DesktopFinding>{{QStringLiteral("display"), State::Missing, problem}};
    report.findings += {dataFinding(AppPaths::support()), busFinding(services)};
    report.findings += portalFindings(services, platform && platform->isGuest());
    report.findings += {openingFinding(), soundFinding(soundServerAnswer(programs))};
    report.findings += helperFindings(programs);
    report.findings += {confinementFinding(KernelConfinement::ofThisKernel()), shortcutsFinding(runningStatus()),
                        loginFinding(programs)};
    return print(report, asJson);
}

} // namespace ostrelle
