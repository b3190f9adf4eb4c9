#include "command/CommandLine.h"

namespace ostrelle {

namespace {

const CommandSpec *findCommand(const QString &name)
{
    for (const CommandSpec &command : allCommands()) {
        if (command.name == name)
            return &command;
    }
    return nullptr;
}

bool isGroup(const QString &name)
{
    for (const CommandSpec &command : allCommands()) {
        if (command.name.startsWith(name + QLatin1Char(' ')))
            return true;
    }
    return false;
}

UsageProblem problem(const QString &message)
{
    return UsageProblem{message};
}

/// The command's name from the first one or two words; the words used are removed.
QString takeName(QStringList &words)
{
    QString name = words.takeFirst();
    if (isGroup(name) && !words.isEmpty() && !words.first().startsWith(QLatin1Char('-')))
        name += QLatin1Char(' ') + words.takeFirst();
    return name;
}

ParsedCommandLine parseArguments(const CommandSpec &command, const QStringList &words)
{
    Invocation invocation{&command, {}, false, true};
    bool onlyArguments = false;
    for (const QString &word : words) {
        if (!onlyArguments && word == u"--") {
            onlyArguments = true;
        } else if (!onlyArguments && (word == u"--help" || word == u"-h")) {
            return HelpRequest{command.name};
        } else if (!onlyArguments && word == u"--json" && command.takesJson) {
            invocation.json = true;
        } else if (!onlyArguments && word.startsWith(u"--")) {
            return problem(QStringLiteral("%1: unknown option %2").arg(command.name, word));
        } else {
            invocation.arguments.append(word);
        }
    }
    if (invocation.arguments.size() < command.minimumArguments ||
        invocation.arguments.size() > command.maximumArguments) {
        const QString usage =
            command.arguments.isEmpty() ? command.name : command.name + QLatin1Char(' ') + command.arguments;
        return problem(QStringLiteral("usage: ostrelle %1").arg(usage));
    }
    return invocation;
}

} // namespace

ParsedCommandLine parseCommandLine(const QStringList &arguments)
{
    if (arguments.isEmpty())
        return Invocation{findCommand(QStringLiteral("open")), {}, false, false};
    QStringList words = arguments;
    if (words.first() == u"--help" || words.first() == u"-h")
        return HelpRequest{};
    if (words.first() == u"--version" || words.first() == u"-V")
        return VersionRequest{};
    if (words.first().startsWith(QLatin1Char('-')))
        return problem(QStringLiteral("unknown option %1; see ostrelle --help").arg(words.first()));

    const QString name = takeName(words);
    if (const CommandSpec *command = findCommand(name))
        return parseArguments(*command, words);
    if (isGroup(name)) {
        if (words.contains(u"--help") || words.contains(u"-h"))
            return HelpRequest{name};
        return problem(QStringLiteral("%1: which command? See ostrelle %1 --help").arg(name));
    }
    return problem(QStringLiteral("unknown command %1; see ostrelle --help").arg(name));
}

} // namespace ostrelle
