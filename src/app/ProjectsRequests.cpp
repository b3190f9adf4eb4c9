#include "app/ProjectsRequests.h"

#include "app/ListEdit.h"
#include "app/NumberedEntry.h"
#include "app/RequestRouter.h"
#include "app/RequestedPaths.h"
#include "files/FilePresence.h"
#include "files/ProjectsService.h"
#include "platform/FileOpening.h"
#include "records/RecordLists.h"

namespace ostrelle {

namespace {

RequestAnswer onNumberedProject(ProjectsService &projects, const QJsonObject &request,
                                const std::function<void(int index)> &act)
{
    return onNumberedEntry(QStringLiteral("projects"), projects.projects().size(), request, act);
}

RequestAnswer moveProject(ProjectsService &projects, const QJsonObject &request)
{
    const QJsonObject target{{QStringLiteral("number"), request[u"to"]}};
    std::optional<int> to;
    RequestAnswer answer = onNumberedProject(projects, target, [&](int index) { to = index; });
    if (!to)
        return answer;
    return onNumberedProject(projects, request, [&](int index) {
        projects.move({index}, destinationOf(index, *to));
        projects.lapse();
    });
}

void openProject(ProjectsService &projects, FilePresence &presence, FileOpening &opening, const QJsonObject &request,
                 const RequestRouter::Reply &reply)
{
    std::optional<QString> path;
    const RequestAnswer answer =
        onNumberedProject(projects, request, [&](int index) { path = projects.projects().at(index).path; });
    if (!path) {
        reply(answer);
        return;
    }
    presence.ask({*path}, &projects, [&opening, path = *path, reply](const QList<FileFacts> &facts) {
        if (facts.first().isFolder() || facts.first().kind == FileFacts::Kind::Unknown) {
            opening.open(path, {});
            reply(RequestAnswer::done());
        } else {
            reply(RequestAnswer::failed(QStringLiteral("projects open: there is no folder %1").arg(path)));
        }
    });
}

} // namespace

void addProjectsRequests(RequestRouter &router, ProjectsService &projects, FilePresence &presence, FileOpening &opening)
{
    const auto addEdit = [&](const QString &verb, RequestRouter::Handler edit) {
        addListEdit<Project>(router, verb, projects, std::move(edit));
    };
    router.add(QStringLiteral("projects.list"), [&projects](const QJsonObject &) {
        return RequestAnswer::done(JsonListStore<Project>::recordsToJson(projects.projects()));
    });
    addEdit(QStringLiteral("projects.add"), [&projects](const QJsonObject &request) {
        const auto folders = requestedPaths(request);
        if (!folders)
            return RequestAnswer::wrongUsage(QStringLiteral("projects add: absolute paths only"));
        projects.addFolders(*folders);
        return RequestAnswer::done();
    });
    addEdit(QStringLiteral("projects.rename"), [&projects](const QJsonObject &request) {
        return onNumberedProject(projects, request, [&](int index) {
            projects.rename(projects.projects().at(index).id, request[u"name"].toString());
        });
    });
    addEdit(QStringLiteral("projects.move"),
            [&projects](const QJsonObject &request) { return moveProject(projects, request); });
    addEdit(QStringLiteral("projects.remove"), [&projects](const QJsonObject &request) {
        return onNumberedProject(projects, request, [&](int index) {
            projects.remove(projects.projects().at(index).id);
            projects.lapse();
        });
    });
    router.addLater(QStringLiteral("projects.open"),
                    [&projects, &presence, &opening](const QJsonObject &request, const RequestRouter::Reply &reply) {
                        openProject(projects, presence, opening, request, reply);
                    });
}

} // namespace ostrelle
