#include "files/ProjectsService.h"

#include "core/ForegroundSession.h"
#include "files/FilePresence.h"
#include "notch/NotchController.h"
#include "platform/FileChooser.h"
#include "platform/Haptics.h"
#include "records/PathText.h"
#include "records/RecordLists.h"

#include <utility>

namespace ostrelle {
namespace {

using namespace std::chrono_literals;

// The chooser's window is still closing when the notch has been told.
constexpr std::chrono::nanoseconds kAutoCollapseDelay = 400ms;

} // namespace

ProjectsService::ProjectsService(JsonListStore<Project> &store, FilePresence &presence, Haptics &haptics,
                                 FileChooser &chooser, ForegroundSession &foreground, NotchController &controller,
                                 QObject *parent)
    : QObject(parent)
    , m_store(store)
    , m_presence(presence)
    , m_haptics(haptics)
    , m_chooser(chooser)
    , m_foreground(foreground)
    , m_controller(controller)
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
    if (std::exchange(m_isChoosing, true))
        return;
    m_controller.suppressAutoCollapse();
    m_foreground.begin();
    FileChoice choice;
    choice.kind = FileChoice::Kind::Folders;
    choice.message = QStringLiteral("Choose the folders you want one click away.");
    choice.acceptLabel = QStringLiteral("Add Project");
    m_chooser.choose(choice, this, [this](const QStringList &folders) { takeChosen(folders); });
}

void ProjectsService::takeChosen(const QStringList &folders)
{
    m_isChoosing = false;
    m_foreground.end();
    if (folders.isEmpty()) {
        m_controller.releaseAutoCollapse(0ns);
        return;
    }
    add(folders);
    m_controller.present(KestroModule::Projects, NotchController::Focus::Take, NotchController::Opening::Explicit);
    m_controller.releaseAutoCollapse(kAutoCollapseDelay);
}

void ProjectsService::add(const QStringList &paths, const std::function<void(int)> &added)
{
    QStringList candidates;
    for (const QString &path : paths)
        candidates.append(standardizedPath(path));
    m_presence.ask(candidates, this, [this, candidates, added](const QList<FileFacts> &facts) {
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
