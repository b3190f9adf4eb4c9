#include "files/FileKinds.h"

#include <QMimeDatabase>
#include <QMimeType>
#include <QString>

#include <algorithm>

namespace ostrelle {
namespace {

bool isOfFamily(const QString &path, const FileFacts &facts, QLatin1StringView family)
{
    if (facts.isFolder())
        return false;
    const QMimeType type = QMimeDatabase().mimeTypeForFile(path, QMimeDatabase::MatchExtension);
    const QStringList ancestors = type.allAncestors();
    return type.name().startsWith(family) ||
           std::any_of(ancestors.begin(), ancestors.end(),
                       [&](const QString &ancestor) { return ancestor.startsWith(family); });
}

} // namespace

bool isAudio(const QString &path, const FileFacts &facts)
{
    return isOfFamily(path, facts, QLatin1StringView("audio/"));
}

bool isImage(const QString &path, const FileFacts &facts)
{
    return isOfFamily(path, facts, QLatin1StringView("image/"));
}

} // namespace ostrelle
