#include "files/ProjectsListModel.h"

#include "files/FilePresence.h"
#include "files/PathToolTip.h"
#include "files/ProjectsService.h"

#include <QDir>
#include <QSet>

namespace ostrelle {

ProjectsListModel::ProjectsListModel(ProjectsService &service, FilePresence &presence, QObject *parent)
    : RecordListModel(service.projects(), parent)
    , m_service(service)
    , m_presence(presence)
{
    connect(&service, &ProjectsService::itemsChanged, this, &ProjectsListModel::follow);
    connect(&presence, &FilePresence::changed, this, &ProjectsListModel::tellPresence);
}

QVariant ProjectsListModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return records().at(index.row()).displayName;
    case Qt::ToolTipRole:
        return pathToolTip(records().at(index.row()).path);
    case Qt::AccessibleDescriptionRole:
        return row(index.row()).secondLine();
    case kRowRole:
        return QVariant::fromValue(row(index.row()));
    default:
        return {};
    }
}

ProjectRow ProjectsListModel::row(int index) const
{
    const Project &project = records().at(index);
    return {.id = project.id,
            .name = project.displayName,
            .parent = shownParent(project.path, QDir::homePath()),
            .isMissing = !m_presence.facts(project.path).isPresent()};
}

void ProjectsListModel::follow(const QList<ListStep> &steps)
{
    Q_EMIT aboutToFollow();
    const QList<Project> after = m_service.projects();
    for (const ListStep &step : steps)
        apply(step, after);
    Q_EMIT followed();
}

void ProjectsListModel::tellPresence(const QStringList &paths)
{
    const QSet<QString> changed(paths.begin(), paths.end());
    tellChanged([&](const Project &project) { return changed.contains(project.path); });
}

} // namespace ostrelle
