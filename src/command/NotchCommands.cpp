#include "command/NotchCommands.h"

#include "command/CommandLine.h"
#include "command/ControlClient.h"
#include "command/Output.h"
#include "command/StartProgram.h"
#include "records/KestroModule.h"
#include "records/ShortcutAction.h"

namespace ostrelle {

namespace {

ExitStatus notRunning()
{
    return fail(ExitStatus::NotRunning, QStringLiteral("not running"));
}

ExitStatus askRunning(const QString &verb)
{
    auto client = ControlClient::connect();
    if (!client)
        return notRunning();
    const ControlAnswer answer = client->ask(verb);
    return answer.status == ExitStatus::Done ? ExitStatus::Done : fail(answer.status, answer.error);
}

QString rectangleText(const QJsonValue &value)
{
    const QJsonObject rect = value.toObject();
    return QStringLiteral("%1 × %2 at %3, %4")
        .arg(rect[u"width"].toDouble())
        .arg(rect[u"height"].toDouble())
        .arg(rect[u"x"].toDouble())
        .arg(rect[u"y"].toDouble());
}

/// "openClipboard, pickColor refused": what is set.
QString shortcutsText(const QJsonObject &states)
{
    QStringList parts;
    for (const ShortcutAction action : kAllShortcutActions) {
        const QString state = states[rawValue(action)].toString();
        if (state == u"registered")
            parts << rawValue(action);
        else if (state == u"refused")
            parts << rawValue(action) + QStringLiteral(" refused");
    }
    return parts.isEmpty() ? QStringLiteral("none") : parts.join(QStringLiteral(", "));
}

QString statusText(const QJsonObject &status)
{
    const QJsonObject screen = status[u"screen"].toObject();
    const QJsonObject counts = status[u"counts"].toObject();
    QString text =
        QStringLiteral("Ostrelle %1, process %2\n").arg(status[u"version"].toString()).arg(status[u"pid"].toInt());
    const QString selection = status[u"selection"].toString();
    text += QStringLiteral("Notch       %1%2\n")
                .arg(status[u"phase"].toString(), selection.isEmpty() ? QString() : QStringLiteral(", ") + selection);
    text += QStringLiteral("Surface     %1\n").arg(rectangleText(status[u"surface"]));
    text += QStringLiteral("Screen      %1, %2, scale %3\n")
                .arg(screen[u"name"].toString(), rectangleText(screen))
                .arg(screen[u"scale"].toDouble());
    text += QStringLiteral("Look        %1, %2%3\n")
                .arg(status[u"theme"].toString(), status[u"appearance"].toString(),
                     status[u"compositor"].toBool() ? QString() : QStringLiteral(", no compositor"));
    const QJsonValue copies = counts[u"clipboard"];
    text += copies.isNull() ? QStringLiteral("Clipboard   its history is being read\n")
                            : QStringLiteral("Clipboard   %1 items\n").arg(copies.toInt());
    text += QStringLiteral("Shortcuts   %1\n").arg(shortcutsText(status[u"shortcuts"].toObject()));
    return text;
}

} // namespace

ExitStatus runOpen(const Invocation &invocation)
{
    const QString tool = invocation.arguments.value(0);
    if (!tool.isEmpty() && !moduleFromRawValue(tool))
        return fail(ExitStatus::WrongUsage,
                    QStringLiteral("open: unknown tool %1; see ostrelle open --help").arg(tool));
    return openOrBecome(tool, /*openAtStart=*/invocation.isExplicit);
}

ExitStatus runClose(const Invocation &)
{
    return askRunning(QStringLiteral("close"));
}

ExitStatus runToggle(const Invocation &)
{
    return askRunning(QStringLiteral("toggle"));
}

ExitStatus runQuit(const Invocation &)
{
    auto client = ControlClient::connect();
    if (!client)
        return notRunning();
    const ControlAnswer answer = client->ask(QStringLiteral("quit"));
    if (answer.status != ExitStatus::Done)
        return fail(answer.status, answer.error);
    return client->waitForEnd() ? ExitStatus::Done
                                : fail(ExitStatus::Failed, QStringLiteral("quit: it has not ended yet"));
}

ExitStatus runStatus(const Invocation &invocation)
{
    auto client = ControlClient::connect();
    if (!client)
        return notRunning();
    const ControlAnswer answer = client->ask(QStringLiteral("status"));
    if (answer.status != ExitStatus::Done)
        return fail(answer.status, answer.error);
    printOut(invocation.json ? compactJson(answer.result) + QLatin1Char('\n') : statusText(answer.result.toObject()));
    return ExitStatus::Done;
}

ExitStatus runWelcome(const Invocation &)
{
    return openWelcomeOrBecome();
}

} // namespace ostrelle
