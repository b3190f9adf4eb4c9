#include "platform/freedesktop/PortalColourPicker.h"

#include "platform/freedesktop/PortalRequest.h"
#include "platform/freedesktop/SessionBus.h"

#include <QDBusArgument>

#include <cmath>
#include <utility>

namespace ostrelle {

namespace {

/// From the portal's "color", three doubles.
std::optional<PickedColour> colourFrom(const QVariant &value)
{
    const auto argument = value.value<QDBusArgument>();
    if (argument.currentSignature() != QStringLiteral("(ddd)")) {
        return std::nullopt;
    }
    PickedColour colour;
    argument.beginStructure();
    argument >> colour.red >> colour.green >> colour.blue;
    argument.endStructure();
    const auto isComponent = [](double component) { return component >= 0 && component <= 1; };
    const bool isColour = isComponent(colour.red) && isComponent(colour.green) && isComponent(colour.blue);
    return isColour ? std::optional(colour) : std::nullopt;
}

} // namespace

PortalColourPicker::PortalColourPicker(Answer answer)
    : m_answer(std::move(answer))
{
    const auto ask = [this](const QDBusConnection &bus) {
        // No parent window: the window manager does not know the panel.
        m_request = std::make_unique<PortalRequest>(
            bus, QStringLiteral("Screenshot"), QStringLiteral("PickColor"), QVariantList{QString()}, QVariantMap(),
            [this](const std::optional<QVariantMap> &results) {
                finish(results ? colourFrom(results->value(QStringLiteral("color"))) : std::nullopt);
            });
    };
    sessionBus::whenConnected(this, ask, [this] { finish(std::nullopt); });
}

PortalColourPicker::~PortalColourPicker() = default;

void PortalColourPicker::finish(std::optional<PickedColour> colour)
{
    if (const Answer answer = std::exchange(m_answer, {})) {
        answer(colour);
    }
}

} // namespace ostrelle
