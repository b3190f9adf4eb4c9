#include "app/LogFormat.h"

#include <QString>
#include <QtGlobal>

namespace ostrelle {

void installLogFormat()
{
    // QT_MESSAGE_PATTERN of the user comes first.
    if (qEnvironmentVariableIsSet("QT_MESSAGE_PATTERN"))
        return;
    qSetMessagePattern(QStringLiteral("%{if-debug}%{time hh:mm:ss.zzz} %{category} %{endif}"
                                      "%{if-info}%{time hh:mm:ss.zzz} %{category} %{endif}ostrelle: %{message}"));
}

} // namespace ostrelle
