#include "app/ColorRequests.h"

#include "app/RequestRouter.h"
#include "foundation/AppPaths.h"
#include "foundation/DefaultsDatabase.h"
#include "inspectors/ColorService.h"
#include "records/ColorText.h"

namespace ostrelle {

namespace {

RequestAnswer withColor(const QJsonObject &request, const std::function<void(const SampledColor &color)> &act)
{
    const auto color = colorFromText(request[u"color"].toString());
    if (!color)
        return RequestAnswer::wrongUsage(QStringLiteral("color: no color"));
    act(*color);
    return RequestAnswer::done();
}

} // namespace

void addColorRequests(RequestRouter &router, ColorService &colors, DefaultsDatabase &defaults)
{
    const auto addEdit = [&](const QString &verb, const RequestRouter::Handler &edit) {
        router.addLater(
            verb, [&colors, &defaults, edit](const QJsonObject &request, const RequestRouter::Reply &reply) {
                const RequestAnswer answer = edit(request);
                if (answer.status != RequestAnswer::Status::Done) {
                    reply(answer);
                    return;
                }
                defaults.whenSaved(&colors, [reply, answer](bool isSaved) {
                    reply(isSaved ? answer
                                  : RequestAnswer::failed(
                                        QStringLiteral("color: cannot write %1").arg(AppPaths::defaultsFile())));
                });
            });
    };
    router.add(QStringLiteral("color.list"),
               [&colors](const QJsonObject &) { return RequestAnswer::done(toJson(colors.lists())); });
    addEdit(QStringLiteral("color.add"), [&colors](const QJsonObject &request) {
        return withColor(request, [&](const SampledColor &color) {
            colors.record(meantColor(colors.recents() + colors.favorites(), color));
        });
    });
    addEdit(QStringLiteral("color.favorite"), [&colors](const QJsonObject &request) {
        return withColor(request, [&](const SampledColor &color) {
            colors.toggleFavorite(meantColor(colors.favorites() + colors.recents(), color));
            colors.lapse();
        });
    });
    addEdit(QStringLiteral("color.clear"), [&colors](const QJsonObject &request) {
        if (request[u"favorites"].toBool()) {
            colors.clearFavorites();
            colors.lapse();
        } else {
            colors.clearRecents();
        }
        return RequestAnswer::done();
    });
}

} // namespace ostrelle
