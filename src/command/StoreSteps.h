#pragma once

#include "command/CommandTable.h"
#include "command/ControlClient.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QString>

#include <functional>
#include <optional>

namespace ostrelle {

class DefaultsDatabase;

// The steps that the commands on stored lists have in common. What fails is told on standard error.

/// Argument `index` as the number of an entry, counted from 1.
std::optional<int> numberFrom(const Invocation &invocation, qsizetype index);
/// Says that `tool` has no entry of that number; Failed.
ExitStatus noEntry(const QString &tool, int number);
/// The answer's status, its error told.
ExitStatus reported(const ControlAnswer &answer);

/// Lets the running program do `verb`, or, when none runs, `edit` under the lock of the data folder.
ExitStatus editStores(const QString &verb, const QJsonObject &arguments, const std::function<ExitStatus()> &edit);
/// Lets the running program do `verb`, or, when none runs, `edit` on the file of the settings. What cannot be written
/// is told as `tool`'s.
ExitStatus editDefaults(const QString &tool, const QString &verb, const QJsonObject &arguments,
                        const std::function<void(DefaultsDatabase &)> &edit);
/// Prints the records that the running program gives for `verb`, or, when none runs, `stored` reads: as JSON where the
/// invocation asks for it, else what `text` makes of them.
ExitStatus listRecords(const Invocation &invocation, const QString &verb, const std::function<QJsonArray()> &stored,
                       const std::function<QString(const QJsonArray &)> &text);

} // namespace ostrelle
