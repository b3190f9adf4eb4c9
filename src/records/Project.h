#pragma once

#include <QJsonObject>
#include <QString>
#include <QStringView>
#include <QUuid>

#include <optional>

namespace ostrelle {

/// One pinned folder.
struct Project
{
    QUuid id;
    QString path; ///< absolute and standardised
    QString displayName;

    static constexpr QStringView kFileName = u"projects.json";
    static constexpr QStringView kListName = u"The list of projects"; ///< in log lines

    /// The inverse of toJson(); nothing when a key is missing or wrong.
    static std::optional<Project> fromJson(const QJsonObject &record);

    friend bool operator==(const Project &, const Project &) = default;
};

/// As it is stored.
QJsonObject toJson(const Project &project);

} // namespace ostrelle
