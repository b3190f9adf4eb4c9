#pragma once

#include <QByteArray>
#include <QString>

class QDateTime;

namespace ostrelle {

/// A moment as a locale writes an abbreviated date and a short time, as in "Nov 24, 2026 at 9:40 PM"; the word between
/// them is English like every text of the program. `locale` is a POSIX name such as "de_DE.UTF-8".
QString writtenTime(const QDateTime &time, const QByteArray &locale);

/// The POSIX name of the locale in which the user wants times to be written; American English where there is no wish.
QByteArray localeOfTimes();

} // namespace ostrelle
