#include "command/HelperAhead.h"

#include "media_client/HelperConnection.h"
#include "media_client/HelperGuess.h"

#include <QFileInfo>

namespace ostrelle {

void startHelperAhead(const QStringList &words)
{
    const bool isInspection = words.value(0) == u"inspect";
    if (words.size() < 2 || (!isInspection && words.first() != u"thumbnail"))
        return;
    const HelperCommand command = isInspection ? HelperCommand::AudioInfo : HelperCommand::Thumbnail;
    const HelperKind kind = firstHelperFor(command, endingOf(words.last()));
    const QString folder = QFileInfo(QStringLiteral("/proc/self/exe")).canonicalPath();
    HelperConnection::startAhead(executableOf(kind, folder));
}

} // namespace ostrelle
