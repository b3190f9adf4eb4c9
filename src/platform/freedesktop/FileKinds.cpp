#include "platform/freedesktop/FileKinds.h"

#include <QMimeDatabase>
#include <QMimeType>

#include <algorithm>

namespace ostrelle::fileKinds {

QStringList typesOf(const QStringList &mimeTypes)
{
    QStringList types;
    for (const QString &name : mimeTypes) {
        if (!name.endsWith(QStringLiteral("/*"))) {
            types << name;
            continue;
        }
        for (const QMimeType &known : QMimeDatabase().allMimeTypes()) {
            if (known.name().startsWith(name.chopped(1))) {
                types << known.name();
            }
        }
    }
    return types;
}

QStringList namePatternsOf(const QStringList &mimeTypes)
{
    const QMimeDatabase database;
    QStringList patterns;
    for (const QString &name : typesOf(mimeTypes)) {
        patterns << database.mimeTypeForName(name).globPatterns();
    }
    patterns.sort();
    patterns.erase(std::unique(patterns.begin(), patterns.end()), patterns.end());
    return patterns;
}

} // namespace ostrelle::fileKinds
