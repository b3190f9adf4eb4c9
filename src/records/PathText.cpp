#include "records/PathText.h"

#include <QDir>

namespace ostrelle {

QStringView lastPathComponent(QStringView path)
{
    while (path.size() > 1 && path.endsWith(u'/'))
        path.chop(1);
    return path.size() == 1 ? path : path.sliced(path.lastIndexOf(u'/') + 1);
}

QString standardizedPath(const QString &path)
{
    QString clean = QDir::cleanPath(path);
    // QDir leaves what lies above the root.
    while (clean.startsWith(u"/../"))
        clean.remove(0, 3);
    return clean == u"/.." ? QStringLiteral("/") : clean;
}

} // namespace ostrelle
