#include "app/LogFormat.h"

#include <QLoggingCategory>
#include <QString>
#include <QtGlobal>

namespace ostrelle {

void installLogFormat()
{
    // The toolkit reads the screens' profiles for itself and complains of those that it has no use for.
    QLoggingCategory::setFilterRules(QStringLiteral("qt.gui.icc=false"));
    // QT_MESSAGE_PATTERN of the user comes first.
    if (qEnvironmentVariableIsSet("QT_MESSAGE_PATTERN"))
        return;
    qSetMessagePattern(QStringLiteral("%{if-debug}%{time hh:mm:ss.zzz} %{category} %{endif}"
                                      "%{if-info}%{time hh:mm:ss.zzz} %{category} %{endif}ostrelle: %{message}"));
}

} // namespace ostrelle
