#include "records/Project.h"

#include "records/RecordText.h"

namespace ostrelle {

std::optional<Project> Project::fromJson(const QJsonObject &record)
{
    const auto id = uuidFromText(record[u"id"].toString().toLatin1());
    if (!id || !record[u"path"].isString() || !record[u"displayName"].isString())
        return std::nullopt;
    return Project{*id, record[u"path"].toString(), record[u"displayName"].toString()};
}

QJsonObject toJson(const Project &project)
{
    return {{QStringLiteral("id"), QString::fromLatin1(uuidText(project.id))},
            {QStringLiteral("path"), project.path},
            {QStringLiteral("displayName"), project.displayName}};
}

} // namespace ostrelle
