#include "app/DesktopReport.h"

#include "foundation/PrintableText.h"
#include "media_client/KernelConfinement.h"
#include "media_client/SoundServerTrial.h"
#include "platform/BusServices.h"
#include "records/ShortcutAction.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QStandardPaths>
#include <QStringList>

#include <algorithm>

namespace ostrelle {
namespace {

using State = DesktopFinding::State;

constexpr int kStateWidth = 11;
constexpr int kNameWidth = 17;

QString stateName(State state)
{
    switch (state) {
    case State::Works:
        return QStringLiteral("works");
    case State::FallsBack:
        return QStringLiteral("fallsBack");
    case State::Missing:
        return QStringLiteral("missing");
    case State::Unknown:
        break;
    }
    return QStringLiteral("unknown");
}

QString shownState(State state)
{
    return state == State::FallsBack ? QStringLiteral("falls back") : stateName(state);
}

bool isProgram(const QString &folder, const QString &name)
{
    return QFileInfo(folder + u'/' + name).isExecutable();
}

/// The folder, or the nearest one above it that is there.
QFileInfo nearestFolder(const QString &path)
{
    QFileInfo folder(path);
    while (!folder.exists() && !folder.isRoot())
        folder = QFileInfo(folder.absolutePath());
    return folder;
}

} // namespace

bool DesktopReport::isComplete() const
{
    return std::ranges::none_of(findings,
                                [](const DesktopFinding &finding) { return finding.state == State::Missing; });
}

QString DesktopReport::text() const
{
    QString text;
    for (const DesktopFinding &finding : findings)
        text += shownState(finding.state).leftJustified(kStateWidth) + finding.name.leftJustified(kNameWidth) +
                printable(finding.text) + u'\n';
    return text + (isComplete() ? QStringLiteral("Nothing that matters is missing.\n")
                                : QStringLiteral("Something that matters is missing.\n"));
}

QJsonObject DesktopReport::toJson() const
{
    QJsonArray array;
    for (const DesktopFinding &finding : findings)
        array.append(QJsonObject{{QStringLiteral("name"), finding.name},
                                 {QStringLiteral("state"), stateName(finding.state)},
                                 {QStringLiteral("text"), finding.text}});
    return {{QStringLiteral("complete"), isComplete()}, {QStringLiteral("findings"), array}};
}

DesktopFinding dataFinding(const QString &folder)
{
    const bool isWritable = nearestFolder(folder).isWritable();
    return {QStringLiteral("data"), isWritable ? State::Works : State::Missing,
            isWritable ? QStringLiteral("What is kept goes to %1.").arg(folder)
                       : QStringLiteral("%1 cannot be written: nothing is kept.").arg(folder)};
}

DesktopFinding busFinding(const BusServices &services)
{
    return {QStringLiteral("bus"), services.hasBus ? State::Works : State::FallsBack,
            services.hasBus
                ? QStringLiteral("There is a session bus.")
                : QStringLiteral("There is no session bus: menus and docks start the program by its command.")};
}

DesktopFinding openingFinding()
{
    for (const auto &name : {QStringLiteral("xdg-open"), QStringLiteral("gio")}) {
        if (!QStandardPaths::findExecutable(name).isEmpty())
            return {QStringLiteral("opening"), State::Works, QStringLiteral("Files and pages open by %1.").arg(name)};
    }
    return {QStringLiteral("opening"), State::Missing,
            QStringLiteral("Neither xdg-open nor gio is there: files and folders cannot be opened.")};
}

DesktopFinding soundFinding(std::optional<SoundServerAnswer> answer)
{
    const QString name = QStringLiteral("sound");
    if (!answer)
        return {name, State::Missing, QStringLiteral("The player is not installed: sounds cannot be heard.")};
    const QString server = qEnvironmentVariableIsSet("PULSE_SERVER")
                               ? QStringLiteral("The sound server that PULSE_SERVER names")
                               : QStringLiteral("The sound server");
    const auto consequence = QStringLiteral("sounds are described, but not heard.");
    switch (*answer) {
    case SoundServerAnswer::LetIn:
        return {name, State::Works, QStringLiteral("Sounds can be heard.")};
    case SoundServerAnswer::Refused:
        return {name, State::FallsBack,
                QStringLiteral("%1 is not there, or lets nobody in: %2").arg(server, consequence)};
    case SoundServerAnswer::Silent:
        return {name, State::FallsBack, QStringLiteral("%1 does not answer: %2").arg(server, consequence)};
    case SoundServerAnswer::NoPlayer:
        break;
    }
    return {name, State::Missing, QStringLiteral("The player cannot be started: sounds cannot be heard.")};
}

QList<DesktopFinding> helperFindings(const QString &programs)
{
    const auto finding = [&](const QString &name, const QStringList &helpers, const QString &good, const QString &bad) {
        const bool isThere =
            std::ranges::all_of(helpers, [&](const QString &helper) { return isProgram(programs, helper); });
        return DesktopFinding{name, isThere ? State::Works : State::Missing, isThere ? good : bad};
    };
    return {finding(QStringLiteral("thumbnails"),
                    {QStringLiteral("ostrelle-media"), QStringLiteral("ostrelle-media-extra")},
                    QStringLiteral("Images, videos and documents have pictures."),
                    QStringLiteral("Helpers are not installed: some files have no picture.")),
            finding(QStringLiteral("facts"),
                    {QStringLiteral("ostrelle-media-facts"), QStringLiteral("ostrelle-media-sound")},
                    QStringLiteral("Images and sounds can be inspected."),
                    QStringLiteral("Helpers are not installed: some files cannot be inspected."))};
}

DesktopFinding confinementFinding(const KernelConfinement &kernel)
{
    const QString name = QStringLiteral("sandbox");
    if (!kernel.hasCallFilter)
        return {name, State::Missing,
                QStringLiteral("The kernel cannot filter system calls: no file is opened for pictures or facts.")};
    QStringList lacking;
    if (!kernel.hasLandlock)
        lacking.append(QStringLiteral("Landlock"));
    if (!kernel.hasNamespaces)
        lacking.append(QStringLiteral("user namespaces"));
    if (lacking.isEmpty())
        return {name, State::Works, QStringLiteral("Files are read in processes that can do nothing else.")};
    return {name, State::FallsBack,
            QStringLiteral("Files are read in processes that are shut in by a filter of system calls; this kernel does "
                           "not offer %1.")
                .arg(lacking.join(QStringLiteral(" and ")))};
}

DesktopFinding shortcutsFinding(const QJsonObject &status)
{
    const QString name = QStringLiteral("shortcuts");
    if (status.isEmpty())
        return {name, State::Unknown, QStringLiteral("The program does not run, so no key combination was asked for.")};
    const QJsonObject states = status[u"shortcuts"].toObject();
    QStringList refused;
    for (const ShortcutAction action : kAllShortcutActions) {
        if (states[rawValue(action)] == QStringLiteral("refused"))
            refused.append(rawValue(action));
    }
    if (refused.isEmpty())
        return {name, State::Works, QStringLiteral("The desktop refuses no key combination.")};
    return {name, State::FallsBack,
            QStringLiteral("The desktop refuses the key combination of %1; \"ostrelle shortcuts set\" gives another "
                           "one.")
                .arg(refused.join(QStringLiteral(", ")))};
}

} // namespace ostrelle
