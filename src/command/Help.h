#pragma once

#include <QString>

namespace ostrelle {

struct CommandSpec;

/// "clipboard pin N".
QString usageOf(const CommandSpec &command);
/// The text of --help: of everything for an empty topic, of a group ("clipboard"), or of one command.
QString helpText(const QString &topic);
/// "ostrelle 0.1.0".
QString versionText();

} // namespace ostrelle
