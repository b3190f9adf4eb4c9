#pragma once

#include <QJsonObject>
#include <QString>
#include <QUuid>

#include <optional>

namespace ostrelle {

/// One pinned folder.
struct Project
{
    QUuid id;
    QString path; ///< absolute and standardised
    QString displayName;

    /// The inverse of toJson(); nothing when a key is missing or wrong.
    static std::optional<Project> fromJson(const QJsonObject &record);

    friend bool operator==(const Project &, const Project &) = default;
};

/// As it is stored.
QJsonObject toJson(const Project &project);

} // namespace ostrelle
