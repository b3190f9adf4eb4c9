#include "app/LogFormat.h"

#include <QByteArray>
#include <QLoggingCategory>
#include <QString>
#include <QtGlobal>

#include <sys/stat.h>
#include <unistd.h>

namespace ostrelle {

namespace {

/// Standard error is the journal's, as systemd.exec(5) says of JOURNAL_STREAM: unless somebody has redirected it.
bool isJournal()
{
    struct stat status = {};
    return ::fstat(STDERR_FILENO, &status) == 0 &&
           qgetenv("JOURNAL_STREAM") ==
               QByteArray::number(quint64{status.st_dev}) + ':' + QByteArray::number(quint64{status.st_ino});
}

} // namespace

void installLogFormat()
{
    // The toolkit reads the screens' profiles for itself and complains of those that it has no use for.
    // QT_LOGGING_RULES of the user comes first.
    QLoggingCategory::setFilterRules(QStringLiteral("qt.gui.icc=false"));
    // So does QT_MESSAGE_PATTERN.
    if (qEnvironmentVariableIsSet("QT_MESSAGE_PATTERN"))
        return;
    if (isJournal())
        // Levels as sd-daemon(3) has them; time and program the journal knows by itself.
        qSetMessagePattern(QStringLiteral("%{if-debug}<7>%{endif}%{if-info}<6>%{endif}%{if-warning}<4>%{endif}"
                                          "%{if-critical}<3>%{endif}%{if-fatal}<2>%{endif}%{category}: %{message}"));
    else
        qSetMessagePattern(QStringLiteral("%{if-debug}%{time hh:mm:ss.zzz} %{category} %{endif}"
                                          "%{if-info}%{time hh:mm:ss.zzz} %{category} %{endif}ostrelle: %{message}"));
}

} // namespace ostrelle
