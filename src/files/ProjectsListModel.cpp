#include "files/ProjectsListModel.h"

#include "files/FilePresence.h"
#include "files/PathToolTip.h"
#include "files/ProjectsService.h"

#include <QDir>
#include <QSet>

namespace ostrelle {

ProjectsListModel::ProjectsListModel(ProjectsService &service, FilePresence &presence, QObject *parent)
    : QAbstractListModel(parent)
    , m_service(service)
    , m_presence(presence)
    , m_projects(service.projects())
{
    connect(&service, &ProjectsService::itemsChanged, this, &ProjectsListModel::follow);
    connect(&presence, &FilePresence::changed, this, &ProjectsListModel::tellPresence);
}

int ProjectsListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_projects.size());
}

QVariant ProjectsListModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return m_projects.at(index.row()).displayName;
    case Qt::ToolTipRole:
        return pathToolTip(m_projects.at(index.row()).path);
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
    const Project &project = m_projects.at(index);
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

void ProjectsListModel::apply(const ListStep &step, const QList<Project> &after)
{
    switch (step.kind) {
    case ListStep::Kind::Insert:
        beginInsertRows({}, step.at, step.at + step.count - 1);
        for (int row = step.at; row < step.at + step.count; ++row)
            m_projects.insert(row, after.at(row));
        endInsertRows();
        break;
    case ListStep::Kind::Remove:
        beginRemoveRows({}, step.at, step.at + step.count - 1);
        m_projects.remove(step.at, step.count);
        endRemoveRows();
        break;
    case ListStep::Kind::Move:
        beginMoveRows({}, step.from, step.from, {}, step.at > step.from ? step.at + 1 : step.at);
        m_projects.move(step.from, step.at);
        endMoveRows();
        break;
    case ListStep::Kind::Change:
        m_projects[step.at] = after.at(step.at);
        Q_EMIT dataChanged(index(step.at), index(step.at));
        break;
    }
}

void ProjectsListModel::tellPresence(const QStringList &paths)
{
    const QSet<QString> changed(paths.begin(), paths.end());
    for (int row = 0; row < rowCount(); ++row) {
        if (changed.contains(m_projects.at(row).path))
            Q_EMIT dataChanged(index(row), index(row));
    }
}

} // namespace ostrelle
