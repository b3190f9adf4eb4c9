#include "command/CommandLine.h"

#include "command/Help.h"

#include <algorithm>

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

bool isOptional(const QString &option)
{
    return option.startsWith(QLatin1Char('['));
}

/// "--size N" without brackets.
QString optionText(const QString &option)
{
    return isOptional(option) ? option.mid(1, option.size() - 2) : option;
}

QString optionName(const QString &option)
{
    return optionText(option).section(QLatin1Char(' '), 0, 0);
}

bool takesValue(const QString &option)
{
    return option.contains(QLatin1Char(' '));
}

/// The command's option of this name, or null.
const QString *findOption(const CommandSpec &command, const QString &name)
{
    const auto found = std::find_if(command.options.cbegin(), command.options.cend(),
                                    [&name](const QString &option) { return optionName(option) == name; });
    return found == command.options.cend() ? nullptr : &*found;
}

bool isComplete(const Invocation &invocation)
{
    const CommandSpec &command = *invocation.command;
    const bool hasOptions =
        std::all_of(command.options.cbegin(), command.options.cend(), [&invocation](const QString &option) {
            return isOptional(option) || invocation.options.contains(optionName(option));
        });
    return hasOptions && invocation.arguments.size() >= command.minimumArguments &&
           invocation.arguments.size() <= command.maximumArguments;
}

ParsedCommandLine parseArguments(const CommandSpec &command, const QStringList &words)
{
    Invocation invocation{&command, {}, false, true};
    bool onlyArguments = false;
    for (qsizetype at = 0; at < words.size(); ++at) {
        const QString &word = words.at(at);
        if (!onlyArguments && word == u"--") {
            onlyArguments = true;
        } else if (!onlyArguments && (word == u"--help" || word == u"-h")) {
            return HelpRequest{command.name};
        } else if (!onlyArguments && word == u"--json" && command.takesJson) {
            invocation.json = true;
        } else if (const QString *option = onlyArguments ? nullptr : findOption(command, word)) {
            if (takesValue(*option) && ++at == words.size())
                return problem(QStringLiteral("%1: %2 needs a value").arg(command.name, word));
            invocation.options.insert(word, takesValue(*option) ? words.at(at) : QString());
        } else if (!onlyArguments && word.startsWith(u"--")) {
            return problem(QStringLiteral("%1: unknown option %2").arg(command.name, word));
        } else {
            invocation.arguments.append(word);
        }
    }
    if (!isComplete(invocation))
        return problem(QStringLiteral("usage: ostrelle %1").arg(usageOf(command)));
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
