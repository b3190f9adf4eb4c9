#include "app/ProjectsRequests.h"

#include "app/NumberedEntry.h"
#include "app/RequestRouter.h"
#include "app/RequestedPaths.h"
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

} // namespace

void addProjectsRequests(RequestRouter &router, ProjectsService &projects, FileOpening &opening)
{
    router.add(QStringLiteral("projects.list"), [&projects](const QJsonObject &) {
        return RequestAnswer::done(JsonListStore<Project>::recordsToJson(projects.projects()));
    });
    router.add(QStringLiteral("projects.add"), [&projects](const QJsonObject &request) {
        const auto folders = requestedPaths(request);
        if (!folders)
            return RequestAnswer::wrongUsage(QStringLiteral("projects add: absolute paths only"));
        projects.addFolders(*folders);
        return RequestAnswer::done();
    });
    router.add(QStringLiteral("projects.rename"), [&projects](const QJsonObject &request) {
        return onNumberedProject(projects, request, [&](int index) {
            projects.rename(projects.projects().at(index).id, request[u"name"].toString());
        });
    });
    router.add(QStringLiteral("projects.move"),
               [&projects](const QJsonObject &request) { return moveProject(projects, request); });
    router.add(QStringLiteral("projects.remove"), [&projects](const QJsonObject &request) {
        return onNumberedProject(projects, request, [&](int index) {
            projects.remove(projects.projects().at(index).id);
            projects.lapse();
        });
    });
    router.add(QStringLiteral("projects.open"), [&projects, &opening](const QJsonObject &request) {
        return onNumberedProject(projects, request,
                                 [&](int index) { opening.open(projects.projects().at(index).path, {}); });
    });
}

} // namespace ostrelle
