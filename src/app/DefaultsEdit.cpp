#include "app/DefaultsEdit.h"

#include "foundation/AppPaths.h"
#include "foundation/DefaultsDatabase.h"

#include <utility>

namespace ostrelle {

void addDefaultsEdit(RequestRouter &router, const QString &verb, DefaultsDatabase &defaults, const QObject &owner,
                     RequestRouter::Handler edit)
{
    const QString area = verb.section(u'.', 0, 0);
    router.addLater(verb, [&defaults, &owner, area, edit = std::move(edit)](const QJsonObject &request,
                                                                            const RequestRouter::Reply &reply) {
        const RequestAnswer answer = edit(request);
        if (answer.status != RequestAnswer::Status::Done) {
            reply(answer);
            return;
        }
        defaults.whenSaved(&owner, [reply, answer, area](bool isSaved) {
            reply(isSaved ? answer
                          : RequestAnswer::failed(
                                QStringLiteral("%1: cannot write %2").arg(area, AppPaths::defaultsFile())));
        });
    });
}

} // namespace ostrelle
