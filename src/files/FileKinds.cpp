#include "files/FileKinds.h"

#include <QMimeDatabase>
#include <QMimeType>
#include <QString>

#include <algorithm>
#include <array>

namespace ostrelle {
namespace {

/// Filed under audio, but only texts that say where sound is.
constexpr std::array kPlaylists{
    QLatin1StringView("audio/x-mpegurl"),    QLatin1StringView("audio/x-scpls"),  QLatin1StringView("audio/x-ms-asx"),
    QLatin1StringView("audio/x-iriver-pla"), QLatin1StringView("audio/x-amzxml"),
};

QMimeType typeOf(const QString &path)
{
    return QMimeDatabase().mimeTypeForFile(path, QMimeDatabase::MatchExtension);
}

bool isOfFamily(const QString &path, const FileFacts &facts, QLatin1StringView family)
{
    if (facts.isFolder())
        return false;
    const QMimeType type = typeOf(path);
    const QStringList ancestors = type.allAncestors();
    return type.name().startsWith(family) ||
           std::any_of(ancestors.begin(), ancestors.end(),
                       [&](const QString &ancestor) { return ancestor.startsWith(family); });
}

} // namespace

bool isAudio(const QString &path, const FileFacts &facts)
{
    return isOfFamily(path, facts, QLatin1StringView("audio/")) &&
           std::find(kPlaylists.begin(), kPlaylists.end(), typeOf(path).name()) == kPlaylists.end();
}

bool isImage(const QString &path, const FileFacts &facts)
{
    return isOfFamily(path, facts, QLatin1StringView("image/"));
}

} // namespace ostrelle
