#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QUuid>

#include <optional>

namespace ostrelle {

// How the stored lists write identifiers and dates.

/// "XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX" in upper case.
QByteArray uuidText(const QUuid &id);
/// The inverse, of either case; nothing when it has another form.
std::optional<QUuid> uuidFromText(QByteArrayView text);

/// Seconds since 2001-01-01 00:00:00 UTC, from milliseconds since 1970.
double referenceDate(qint64 msecsSinceEpoch);

} // namespace ostrelle
