#include "app/ColorPickRequest.h"

#include "app/RequestRouter.h"
#include "inspectors/ColorService.h"

namespace ostrelle {

void addColorPickRequest(RequestRouter &router, ColorService &colors)
{
    router.addLater(QStringLiteral("color.pick"), [&colors](const QJsonObject &, const RequestRouter::Reply &reply) {
        const bool isOpen = colors.isSampling();
        colors.sample(&colors, [reply](const std::optional<SampledColor> &color) {
            reply(color ? RequestAnswer::done(toJson(*color))
                        : RequestAnswer::failed(QStringLiteral("color pick: no color was picked")));
        });
        // Or another process has one.
        if (isOpen || !colors.isSampling())
            reply(RequestAnswer::failed(QStringLiteral("color pick: a loupe is open already")));
    });
}

} // namespace ostrelle
