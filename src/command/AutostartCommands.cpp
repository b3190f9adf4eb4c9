#include "command/AutostartCommands.h"

#include "command/ControlClient.h"
#include "command/Output.h"
#include "command/StartProgram.h"

namespace ostrelle {

namespace {

/// The running program is asked, so that its window shows the change; where none runs the same code does it alone.
ExitStatus runAutostart(const QString &verb)
{
    auto client = ControlClient::connect();
    if (!client)
        return becomeOneShot({"--autostart=" + verb.toUtf8()});
    const ControlAnswer answer =
        // In a sandbox the desktop may ask the user.
        client->ask(QStringLiteral("autostart.") + verb, {}, ControlClient::Patience::ForTheUser);
    if (answer.status != ExitStatus::Done)
        return fail(answer.status, QStringLiteral("autostart: ") + answer.error);
    if (const QString text = answer.result.toString(); !text.isEmpty())
        printOut(text + QLatin1Char('\n'));
    return ExitStatus::Done;
}

} // namespace

ExitStatus runAutostartOn(const Invocation &)
{
    return runAutostart(QStringLiteral("on"));
}

ExitStatus runAutostartOff(const Invocation &)
{
    return runAutostart(QStringLiteral("off"));
}

ExitStatus runAutostartStatus(const Invocation &)
{
    return runAutostart(QStringLiteral("status"));
}

} // namespace ostrelle
