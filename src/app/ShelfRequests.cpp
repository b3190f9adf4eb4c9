#include "app/ShelfRequests.h"

#include "app/ListEdit.h"
#include "app/NumberedEntry.h"
#include "app/RequestRouter.h"
#include "app/RequestedPaths.h"
#include "files/AssetShelfService.h"

namespace ostrelle {

void addShelfRequests(RequestRouter &router, AssetShelfService &shelf)
{
    const auto addEdit = [&](const QString &verb, RequestRouter::Handler edit) {
        addListEdit<ShelfItem>(router, verb, shelf, std::move(edit));
    };
    router.add(QStringLiteral("shelf.list"), [&shelf](const QJsonObject &) {
        return RequestAnswer::done(JsonListStore<ShelfItem>::recordsToJson(shelf.items()));
    });
    addEdit(QStringLiteral("shelf.add"), [&shelf](const QJsonObject &request) {
        const auto paths = requestedPaths(request);
        if (!paths)
            return RequestAnswer::wrongUsage(QStringLiteral("shelf add: absolute paths only"));
        shelf.addExisting(*paths);
        return RequestAnswer::done();
    });
    addEdit(QStringLiteral("shelf.remove"), [&shelf](const QJsonObject &request) {
        return onNumberedEntry(QStringLiteral("shelf"), shelf.items().size(), request, [&](int index) {
            shelf.remove({shelf.items().at(index).id});
            shelf.lapse();
        });
    });
    addEdit(QStringLiteral("shelf.clear"), [&shelf](const QJsonObject &) {
        shelf.eraseAll();
        return RequestAnswer::done();
    });
}

} // namespace ostrelle
