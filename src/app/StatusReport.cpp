#include "app/StatusReport.h"

#include "app/Services.h"
#include "app/ShortcutsRequests.h"
#include "core/SettingsStore.h"
#include "inspectors/ColorService.h"
#include "notch/NotchAppearance.h"
#include "notch/NotchController.h"
#include "notch/NotchPanel.h"
#include "notch/NotchViewModel.h"
#include "notch/ToolRegistry.h"
#include "platform/PanelHost.h"
#include "platform/Platform.h"

#include <QCoreApplication>
#include <QJsonArray>

namespace ostrelle {

namespace {

QJsonObject rectangle(const QRectF &rect)
{
    return {{QStringLiteral("x"), rect.x()},
            {QStringLiteral("y"), rect.y()},
            {QStringLiteral("width"), rect.width()},
            {QStringLiteral("height"), rect.height()}};
}

/// Everything of the notch hangs from the middle of the screen's top edge.
QRectF atTopCentre(const QRectF &screen, const QSizeF &size)
{
    return {QPointF(screen.x() + (screen.width() - size.width()) / 2, screen.y()), size};
}

QJsonObject screenObject(const Screen &screen)
{
    QJsonObject object = rectangle(screen.frame);
    object[QStringLiteral("name")] = screen.name;
    object[QStringLiteral("scale")] = screen.scale;
    return object;
}

QJsonObject metricsObject(const NotchMetrics &metrics)
{
    return {{QStringLiteral("hasHardwareNotch"), metrics.hasHardwareNotch},
            {QStringLiteral("hardwareNotchSize"),
             QJsonObject{{QStringLiteral("width"), metrics.hardwareNotchSize.width()},
                         {QStringLiteral("height"), metrics.hardwareNotchSize.height()}}},
            {QStringLiteral("menuBarHeight"), metrics.menuBarHeight}};
}

QJsonArray rawValues(const QList<KestroModule> &modules)
{
    QJsonArray names;
    for (const KestroModule module : modules)
        names.append(rawValue(module));
    return names;
}

/// The frames count from the panel's corner, and remain for a while after the zones are gone.
QJsonObject dropZones(const NotchViewModel &viewModel, const QSize &panel, const QRectF &screen)
{
    if (viewModel.dropTargets().isEmpty())
        return {};
    const QPointF origin = atTopCentre(screen, panel).topLeft();
    const auto frames = viewModel.dropZoneFrames();
    QJsonObject zones;
    for (auto frame = frames.begin(); frame != frames.end(); ++frame)
        zones[rawValue(frame.key())] = rectangle(frame.value().translated(origin));
    return zones;
}

QJsonObject counts(const ToolRegistry &registry)
{
    QJsonObject object;
    for (const KestroModule module : kAllModules) {
        const Tool *tool = registry.find(module);
        const std::optional<int> count = tool && tool->count ? tool->count() : 0;
        object[rawValue(module)] = count ? QJsonValue(*count) : QJsonValue();
    }
    return object;
}

} // namespace

QJsonObject statusReport(Services &services)
{
    const NotchController &controller = services.controller();
    const NotchViewModel &viewModel = services.viewModel();
    PanelHost &host = services.platform().panelHost();
    const Screen screen = controller.currentScreen().value_or(Screen());
    const NotchGeometry geometry = viewModel.geometry();
    const auto selection = viewModel.selection();
    return {
        {QStringLiteral("pid"), QCoreApplication::applicationPid()},
        {QStringLiteral("version"), QCoreApplication::applicationVersion()},
        {QStringLiteral("phase"), phaseName(viewModel.phase())},
        {QStringLiteral("selection"), selection ? QJsonValue(rawValue(*selection)) : QJsonValue()},
        {QStringLiteral("surface"), rectangle(atTopCentre(screen.frame, geometry.contentSize))},
        {QStringLiteral("interaction"), rectangle(atTopCentre(screen.frame, geometry.interactionSize))},
        {QStringLiteral("window"), rectangle(atTopCentre(screen.frame, controller.windowSize()))},
        {QStringLiteral("screen"), screenObject(screen)},
        {QStringLiteral("metrics"), metricsObject(viewModel.metrics())},
        {QStringLiteral("openedByHover"), viewModel.openedByHover()},
        {QStringLiteral("dragCatchArmed"), viewModel.isDragCatchArmed()},
        {QStringLiteral("dropTargets"), rawValues(viewModel.dropTargets())},
        {QStringLiteral("dropZones"), dropZones(viewModel, services.panel().size(), screen.frame)},
        {QStringLiteral("hasFocus"), host.hasKeyboard()},
        {QStringLiteral("sampling"), services.colors().isSampling()},
        {QStringLiteral("theme"), rawValue(services.settings().notchTheme())},
        {QStringLiteral("appearance"),
         services.appearance().scheme() == ColorScheme::Dark ? QStringLiteral("dark") : QStringLiteral("light")},
        {QStringLiteral("compositor"), host.hasCompositor()},
        {QStringLiteral("counts"), counts(services.tools())},
        {QStringLiteral("shortcuts"), shortcutStates(services.shortcuts())},
    };
}

} // namespace ostrelle
