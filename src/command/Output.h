#pragma once

#include "command/CommandTable.h"
#include "foundation/PrintableText.h" // what is printed goes through it

#include <QJsonValue>
#include <QString>

namespace ostrelle {

void printOut(const QString &text);
/// Prints "ostrelle: message" on standard error and returns `status`.
ExitStatus fail(ExitStatus status, const QString &message);
/// Any JSON value, compact, on one line.
QString compactJson(const QJsonValue &value);

} // namespace ostrelle
