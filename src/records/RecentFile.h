#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QList>
#include <QString>

#include <optional>

namespace ostrelle {

/// Where the tools keep the files that they have shown, in the defaults database.
inline constexpr QLatin1StringView kImageRecentsKey("imageInfo.recents");
inline constexpr QLatin1StringView kAudioRecentsKey("audioInfo.recents");

/// A file that a tool has shown.
struct RecentFile
{
    QString path;    ///< absolute, as it was given
    QString name;    ///< its last component
    QString summary; ///< what the tool found, in one line
    double date = 0; ///< of the showing, seconds since 2001-01-01 00:00:00 UTC

    /// The inverse of toJson(); nothing when a key is missing or wrong.
    static std::optional<RecentFile> fromJson(const QJsonObject &record);

    friend bool operator==(const RecentFile &, const RecentFile &) = default;
};

/// As it is stored.
QJsonObject toJson(const RecentFile &file);

/// A compact JSON array, an object per file in list order.
QByteArray encodedRecentFiles(const QList<RecentFile> &files);
/// The inverse; nothing when one element is malformed.
std::optional<QList<RecentFile>> decodedRecentFiles(const QByteArray &json);

} // namespace ostrelle
