#include "files/ProjectRow.h"

namespace ostrelle {

QString ProjectRow::secondLine() const
{
    return isMissing ? QStringLiteral("Missing — folder moved or deleted") : parent;
}

QString shownParent(const QString &path, const QString &home)
{
    const QString parent = path.left(path.lastIndexOf(u'/'));
    if (parent.isEmpty())
        return QStringLiteral("/");
    // A home of "/" is no shorter way to say anything.
    const bool isInHome = home.size() > 1 && (parent == home || parent.startsWith(home + u'/'));
    return isInHome ? u'~' + parent.mid(home.size()) : parent;
}

} // namespace ostrelle
