#include "app/AutostartRequests.h"

#include "app/RequestRouter.h"
#include "core/LaunchAtLogin.h"

namespace ostrelle {

namespace {

RequestRouter::LaterHandler setter(LaunchAtLogin &launch, bool isEnabled)
{
    return [&launch, isEnabled](const QJsonObject &, const RequestRouter::Reply &reply) {
        launch.setEnabled(isEnabled, &launch, [reply](const QString &problem) {
            reply(problem.isEmpty() ? RequestAnswer::done() : RequestAnswer::failed(problem));
        });
    };
}

} // namespace

void addAutostartRequests(RequestRouter &router, LaunchAtLogin &launch)
{
    router.addLater(QStringLiteral("autostart.on"), setter(launch, true));
    router.addLater(QStringLiteral("autostart.off"), setter(launch, false));
    router.add(QStringLiteral("autostart.status"),
               [&launch](const QJsonObject &) { return RequestAnswer::done(launch.statusText()); });
}

} // namespace ostrelle
