#pragma once

#include "command/CommandTable.h"

#include <QHash>
#include <QString>
#include <QStringList>

#include <variant>

namespace ostrelle {

/// A command with its checked number of arguments.
struct Invocation
{
    const CommandSpec *command = nullptr;
    QStringList arguments;
    bool json = false;
    bool isExplicit = true;               ///< false when no command was given
    QHash<QString, QString> options = {}; ///< by their names, "--size"; those without a value are empty
};

struct HelpRequest
{
    QString topic; ///< a command, a group of commands, or empty for everything
};
struct VersionRequest
{
};
/// One line for standard error, without the program's name.
struct UsageProblem
{
    QString message;
};

using ParsedCommandLine = std::variant<Invocation, HelpRequest, VersionRequest, UsageProblem>;

/// `arguments` without the program's name, names of files as wordOfBytes() writes them. No arguments at all stand for
/// "open".
ParsedCommandLine parseCommandLine(const QStringList &arguments);

} // namespace ostrelle
