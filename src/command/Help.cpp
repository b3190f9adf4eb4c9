#include "command/Help.h"

#include "command/CommandTable.h"

#include <algorithm>

namespace ostrelle {

namespace {

QString lineOf(const CommandSpec &command, qsizetype width)
{
    return QStringLiteral("  %1  %2\n").arg(usageOf(command).leftJustified(width), command.summary);
}

QString commandLines(const QString &group)
{
    qsizetype width = 0;
    for (const CommandSpec &command : allCommands())
        width = std::max(width, usageOf(command).size());
    QString text;
    for (const CommandSpec &command : allCommands()) {
        if (group.isEmpty() || command.name.startsWith(group + QLatin1Char(' ')))
            text += lineOf(command, width);
    }
    return text;
}

} // namespace

QString usageOf(const CommandSpec &command)
{
    QString usage = command.name;
    if (command.takesJson)
        usage += QStringLiteral(" [--json]");
    if (!command.arguments.isEmpty())
        usage += QLatin1Char(' ') + command.arguments;
    for (const QString &option : command.options)
        usage += QLatin1Char(' ') + option;
    return usage;
}

QString helpText(const QString &topic)
{
    for (const CommandSpec &command : allCommands()) {
        if (command.name != topic)
            continue;
        QString text = QStringLiteral("Usage: ostrelle %1\n\n%2.\n").arg(usageOf(command), command.summary);
        if (!command.details.isEmpty())
            text += command.details + QLatin1Char('\n');
        if (const QString more = commandLines(topic); !topic.isEmpty() && !more.isEmpty())
            text += QLatin1Char('\n') + more;
        return text;
    }
    if (!topic.isEmpty())
        return QStringLiteral("Usage: ostrelle %1 COMMAND\n\n%2").arg(topic, commandLines(topic));
    return QStringLiteral(
               "Ostrelle: six small tools, just above your work.\n\n"
               "Usage: ostrelle [COMMAND]\n\n"
               "Without a command: opens the notch, and starts the program when it is not running.\n\n"
               "%1\n"
               "  ostrelle COMMAND --help tells more about a command; ostrelle --version names the version.\n\n"
               "Exit status: 0 done, 1 failed, 2 wrong usage, 3 not running.\n")
        .arg(commandLines({}));
}

QString versionText()
{
    return QStringLiteral("ostrelle " OSTRELLE_VERSION);
}

} // namespace ostrelle
