#include "app/ColorRequests.h"

#include "app/DefaultsEdit.h"
#include "app/RequestRouter.h"
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
        addDefaultsEdit(router, verb, defaults, colors, edit);
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
