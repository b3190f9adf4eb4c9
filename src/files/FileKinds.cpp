#include "files/FileKinds.h"

#include <QFileInfo>
#include <QMimeDatabase>
#include <QMimeType>
#include <QString>

#include <algorithm>
#include <array>

namespace ostrelle {
namespace {

struct Ending
{
    QLatin1StringView suffix;
    QLatin1StringView family;
};

constexpr QLatin1StringView kAudio("audio/");
constexpr QLatin1StringView kVideo("video/");
constexpr QLatin1StringView kImage("image/");

/// What shared-mime-info 2.2 does not know, or files under no family.
constexpr std::array kUnknownToTheDatabase{
    Ending{QLatin1StringView("caf"), kAudio},  Ending{QLatin1StringView("w64"), kAudio},
    Ending{QLatin1StringView("rf64"), kAudio}, Ending{QLatin1StringView("bwf"), kAudio},
    Ending{QLatin1StringView("asf"), kVideo},  Ending{QLatin1StringView("hdr"), kImage},
    Ending{QLatin1StringView("apng"), kImage},
};

bool isOfFamily(const QString &path, const FileFacts &facts, QLatin1StringView family)
{
    if (facts.isFolder())
        return false;
    const QMimeType type = QMimeDatabase().mimeTypeForFile(path, QMimeDatabase::MatchExtension);
    const QStringList ancestors = type.allAncestors();
    const QString suffix = QFileInfo(path).suffix().toLower();
    return type.name().startsWith(family) ||
           std::any_of(ancestors.begin(), ancestors.end(),
                       [&](const QString &ancestor) { return ancestor.startsWith(family); }) ||
           std::any_of(kUnknownToTheDatabase.begin(), kUnknownToTheDatabase.end(),
                       [&](const Ending &ending) { return ending.family == family && suffix == ending.suffix; });
}

QStringList extraPatterns(QLatin1StringView family)
{
    QStringList patterns;
    for (const Ending &ending : kUnknownToTheDatabase) {
        if (ending.family == family)
            patterns.append(QStringLiteral("*.") + ending.suffix);
    }
    return patterns;
}

} // namespace

bool isAudio(const QString &path, const FileFacts &facts)
{
    return isOfFamily(path, facts, kAudio);
}

bool isVideo(const QString &path, const FileFacts &facts)
{
    return isOfFamily(path, facts, kVideo);
}

bool isImage(const QString &path, const FileFacts &facts)
{
    return isOfFamily(path, facts, kImage);
}

QStringList extraAudioPatterns()
{
    return extraPatterns(kAudio);
}

QStringList extraImagePatterns()
{
    return extraPatterns(kImage);
}

} // namespace ostrelle
