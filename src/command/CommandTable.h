#pragma once

#include <QString>
#include <QStringList>

#include <limits>
#include <span>
#include <vector>

namespace ostrelle {

struct Invocation;

/// The exit status of every command.
enum class ExitStatus { Done = 0, Failed = 1, WrongUsage = 2, NotRunning = 3 };

/// One row of the table of commands, which the parser, the help and the documents are made from.
struct CommandSpec
{
    static constexpr int kAnyNumber = std::numeric_limits<int>::max();

    QString name;      ///< "status", or "clipboard pin" for a command of a group
    QString arguments; ///< "N", "[TOOL]", "KEY VALUE"
    QString summary;   ///< one line, without a full stop
    QString details;   ///< further lines of its own help; may be empty
    bool takesJson = false;
    int minimumArguments = 0;
    int maximumArguments = 0; ///< kAnyNumber: no limit
    ExitStatus (*run)(const Invocation &invocation) = nullptr;
    QStringList options = {}; ///< "--output FILE", "[--size N]"; those that take no value: "[--recursive]"
};

std::span<const CommandSpec> allCommands();

} // namespace ostrelle
