#include "app/UpdateRequests.h"

#include "app/RequestRouter.h"
#include "records/UpdateReport.h"
#include "updates/UpdateReporting.h"
#include "updates/UpdateService.h"

namespace ostrelle {

void addUpdateRequests(RequestRouter &router, UpdateService &updates)
{
    router.addLater(QStringLiteral("update.check"), [&updates](const QJsonObject &, const RequestRouter::Reply &reply) {
        updates.check(UpdateService::Check::Manual,
                      [reply](const UpdateState &state) { reply(RequestAnswer::done(reportOf(state).toJson())); });
    });
}

} // namespace ostrelle
