#include "files/RecentEntry.h"

namespace ostrelle {

QString RecentEntry::description() const
{
    QString words = name + QStringLiteral(", ") + (isMissing ? QStringLiteral("missing") : summary);
    if (isPlaying)
        words += QStringLiteral(", playing");
    return words;
}

} // namespace ostrelle
