#pragma once

#include "command/CommandTable.h"

#include <QJsonValue>
#include <QString>

namespace ostrelle {

void printOut(const QString &text);
/// Prints "ostrelle: message" on standard error and returns `status`.
ExitStatus fail(ExitStatus status, const QString &message);
/// Any JSON value, compact, on one line.
QString compactJson(const QJsonValue &value);
/// `text` without control characters, so that nothing in it can steer a terminal.
QString printable(const QString &text);

} // namespace ostrelle
