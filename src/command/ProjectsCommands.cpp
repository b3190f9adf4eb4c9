#include "command/ProjectsCommands.h"

#include "command/CommandLine.h"
#include "command/RecordEdits.h"
#include "records/RecordLists.h"

#include <QFileInfo>
#include <QProcess>

namespace ostrelle {

namespace {

const QString kTool = QStringLiteral("projects");
const QString kNumber = QStringLiteral("number");

ExitStatus openStored(int number)
{
    const QList<Project> projects = JsonListStore<Project>(AppPaths::support()).load();
    if (number > projects.size())
        return noEntry(kTool, number);
    const QString path = projects.at(number - 1).path;
    if (!QFileInfo(path).isDir())
        return fail(ExitStatus::Failed, QStringLiteral("projects open: there is no folder %1").arg(printable(path)));
    const bool isOpened = QProcess::startDetached(QStringLiteral("xdg-open"), {path}) ||
                          QProcess::startDetached(QStringLiteral("gio"), {QStringLiteral("open"), path});
    return isOpened ? ExitStatus::Done
                    : fail(ExitStatus::Failed, QStringLiteral("projects open: neither xdg-open nor gio is there"));
}

} // namespace

ExitStatus runProjectsList(const Invocation &invocation)
{
    return listStoredRecords<Project>(invocation, QStringLiteral("projects.list"), [](const Project &project) {
        return QStringLiteral("%1  (%2)").arg(printable(project.displayName), printable(project.path));
    });
}

ExitStatus runProjectsAdd(const Invocation &invocation)
{
    return addPaths<Project>(invocation.arguments, PathKind::Folder, QStringLiteral("projects.add"),
                             QStringLiteral("projects add: %1 is no folder"), withFolders);
}

ExitStatus runProjectsRename(const Invocation &invocation)
{
    const auto number = numberFrom(invocation, 0);
    if (!number)
        return ExitStatus::WrongUsage;
    const QString name = invocation.arguments.at(1);
    return editStores(QStringLiteral("projects.rename"), {{kNumber, *number}, {QStringLiteral("name"), name}}, [&] {
        return editRecord<Project>(kTool, *number, [&](QList<Project> projects, int index) {
            projects[index].displayName = projectName(projects[index], name);
            return projects;
        });
    });
}

ExitStatus runProjectsMove(const Invocation &invocation)
{
    const auto number = numberFrom(invocation, 0);
    const auto to = numberFrom(invocation, 1);
    if (!number || !to)
        return ExitStatus::WrongUsage;
    return editStores(QStringLiteral("projects.move"), {{kNumber, *number}, {QStringLiteral("to"), *to}}, [&] {
        const QList<Project> projects = JsonListStore<Project>(AppPaths::support()).load();
        if (*to > projects.size())
            return noEntry(kTool, *to);
        return editRecord<Project>(kTool, *number, [&](const QList<Project> &list, int index) {
            return moved(list, {index}, destinationOf(index, *to - 1));
        });
    });
}

ExitStatus runProjectsRemove(const Invocation &invocation)
{
    const auto number = numberFrom(invocation, 0);
    if (!number)
        return ExitStatus::WrongUsage;
    return editStores(QStringLiteral("projects.remove"), {{kNumber, *number}}, [&] {
        return editRecord<Project>(kTool, *number, [](QList<Project> projects, int index) {
            projects.removeAt(index);
            return projects;
        });
    });
}

ExitStatus runProjectsOpen(const Invocation &invocation)
{
    const auto number = numberFrom(invocation, 0);
    if (!number)
        return ExitStatus::WrongUsage;
    if (auto client = ControlClient::connect())
        return reported(client->ask(QStringLiteral("projects.open"), {{kNumber, *number}}));
    return openStored(*number);
}

} // namespace ostrelle
