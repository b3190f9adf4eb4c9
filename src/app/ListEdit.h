#pragma once

#include "app/RequestRouter.h"
#include "foundation/AppPaths.h"

#include <utility>

namespace ostrelle {

/// Adds a verb that edits the stored list of `Record` in `service`. Who asked hears that the edit was done when it is
/// on the disk, as if the command had written the list by itself.
template <typename Record, typename Service>
void addListEdit(RequestRouter &router, const QString &verb, Service &service, RequestRouter::Handler edit)
{
    router.addLater(
        verb, [&service, edit = std::move(edit)](const QJsonObject &request, const RequestRouter::Reply &reply) {
            const RequestAnswer answer = edit(request);
            if (answer.status != RequestAnswer::Status::Done) {
                reply(answer);
                return;
            }
            service.whenSaved(&service, [reply, answer](bool isSaved) {
                const auto path = QStringLiteral("%1/%2").arg(AppPaths::support(), Record::kFileName);
                reply(isSaved ? answer : RequestAnswer::failed(QStringLiteral("cannot write %1").arg(path)));
            });
        });
}

} // namespace ostrelle
