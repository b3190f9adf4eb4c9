#include "files/ProjectsService.h"

#include "files/FilePicker.h"
#include "notch/NotchController.h"
#include "platform/Haptics.h"
#include "records/PathText.h"
#include "records/RecordLists.h"

#include <utility>

namespace ostrelle {

ProjectsService::ProjectsService(JsonListStore<Project> &store, FilePresence &presence, Haptics &haptics,
                                 FilePicker &picker, NotchController &controller, QObject *parent)
    : QObject(parent)
    , m_store(store)
    , m_haptics(haptics)
    , m_picker(picker)
    , m_controller(controller)
    , m_additions(presence)
    , m_projects(store.load())
{
}

const QList<Project> &ProjectsService::projects() const
{
    return m_projects.value();
}

QBindable<QList<Project>> ProjectsService::bindableProjects()
{
    return &m_projects;
}

void ProjectsService::promptToAdd()
{
    FileChoice choice;
    choice.kind = FileChoice::Kind::Folders;
    choice.message = QStringLiteral("Choose the folders you want one click away.");
    choice.acceptLabel = QStringLiteral("Add Project");
    m_picker.pick(choice, this, FilePicker::AfterCancel::CollapseAtOnce,
                  [this](const QStringList &folders) { takeChosen(folders); });
}

void ProjectsService::takeChosen(const QStringList &folders)
{
    if (folders.isEmpty())
        return;
    add(folders);
    m_controller.present(KestroModule::Projects, NotchController::Focus::Take, NotchController::Opening::Explicit);
}

void ProjectsService::add(const QStringList &paths, const std::function<void(int)> &added)
{
    QStringList candidates;
    for (const QString &path : paths)
        candidates.append(standardizedPath(path));
    m_additions.ask(candidates, [this, candidates, added](const QList<FileFacts> &facts) {
        QStringList folders;
        for (qsizetype i = 0; i < candidates.size(); ++i) {
            if (facts[i].isFolder() || facts[i].kind == FileFacts::Kind::Unknown)
                folders.append(candidates[i]);
        }
        const int count = addFolders(folders);
        if (added)
            added(count);
    });
}

int ProjectsService::addFolders(const QStringList &folders)
{
    const QList<Project> longer = withFolders(projects(), folders);
    const auto count = static_cast<int>(longer.size() - projects().size());
    if (count == 0)
        return 0;
    m_haptics.tick();
    put(longer);
    return count;
}

void ProjectsService::rename(const QUuid &id, const QString &name)
{
    const int index = indexOf(projects(), id);
    if (index < 0)
        return;
    QList<Project> renamed = projects();
    renamed[index].displayName = projectName(renamed[index], name);
    put(renamed);
}

void ProjectsService::move(const QList<int> &offsets, int destination, Step step)
{
    const QList<Project> before = projects();
    if (!put(moved(before, offsets, destination)))
        return;
    const bool isContinued = step == Step::Further && m_undo;
    // By value: what stands in the old undo goes with it.
    m_undo = ListUndo<Project>(isContinued ? m_undo->before() : before, projects());
}

void ProjectsService::remove(const QUuid &id)
{
    const QList<Project> before = projects();
    QList<Project> left = before;
    left.removeIf([&](const Project &project) { return project.id == id; });
    if (put(left))
        m_undo.emplace(before, left);
}

void ProjectsService::whenSaved(const QObject *context, std::function<void(bool)> answer)
{
    m_store.whenSaved(context, std::move(answer));
}

bool ProjectsService::canUndo() const
{
    return m_undo && m_undo->undone(projects()) != projects();
}

void ProjectsService::undo()
{
    if (const auto undo = std::exchange(m_undo, std::nullopt))
        put(undo->undone(projects()));
}

void ProjectsService::lapse()
{
    m_undo.reset();
}

bool ProjectsService::put(const QList<Project> &projects)
{
    const QList<ListStep> steps = listSteps(this->projects(), projects);
    m_projects = projects;
    m_store.save(projects);
    if (!steps.isEmpty())
        Q_EMIT itemsChanged(steps);
    return !steps.isEmpty();
}

} // namespace ostrelle
