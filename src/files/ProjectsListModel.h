#pragma once

#include "files/ProjectRow.h"
#include "files/RecordListModel.h"
#include "records/ListStep.h"
#include "records/Project.h"

#include <QStringList>

namespace ostrelle {

class FilePresence;
class ProjectsService;

/// The projects as a list, in the user's order. Whether a folder is there is asked for the rows that are looked at.
class ProjectsListModel : public RecordListModel<Project>
{
    Q_OBJECT
public:
    static constexpr int kRowRole = Qt::UserRole; ///< a ProjectRow

    ProjectsListModel(ProjectsService &service, FilePresence &presence, QObject *parent = nullptr);

    /// Besides kRowRole the name as DisplayRole, the path as ToolTipRole, and where the folder is, or that it is
    /// missing, as AccessibleDescriptionRole.
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

    const Project &project(int row) const { return records().at(row); }

Q_SIGNALS:
    /// Around all the changes that lead from one state of the list to the next.
    void aboutToFollow();
    void followed();

private:
    ProjectRow row(int index) const;
    void follow(const QList<ListStep> &steps);
    void tellPresence(const QStringList &paths);

    ProjectsService &m_service;
    FilePresence &m_presence;
};

} // namespace ostrelle
