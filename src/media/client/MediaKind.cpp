#include "media_client/MediaKind.h"

#include <QMimeDatabase>
#include <QMimeType>
#include <QStringList>

#include <algorithm>

namespace ostrelle {

std::optional<MediaKind> mediaKindOf(const QString &name)
{
    const QMimeType type = QMimeDatabase().mimeTypeForFile(name, QMimeDatabase::MatchExtension);
    const QStringList types = QStringList{type.name()} + type.allAncestors();
    const auto isOf = [&types](QLatin1StringView family) {
        return std::any_of(types.begin(), types.end(), [&](const QString &each) { return each.startsWith(family); });
    };
    if (isOf(QLatin1StringView("image/")))
        return MediaKind::Image;
    if (isOf(QLatin1StringView("audio/")) || isOf(QLatin1StringView("video/")))
        return MediaKind::Audio;
    return std::nullopt;
}

} // namespace ostrelle
