#include "app/ToolRegistration.h"

#include "app/Services.h"
#include "clipboard/ClipboardModuleView.h"
#include "clipboard/ClipboardService.h"
#include "files/AssetShelfService.h"
#include "files/AssetsModuleView.h"
#include "files/ProjectsModuleView.h"
#include "files/ProjectsService.h"
#include "foundation/MakeChild.h"
#include "inspectors/AudioInfoModuleView.h"
#include "inspectors/AudioInspector.h"
#include "inspectors/ColorModuleView.h"
#include "inspectors/ColorService.h"
#include "inspectors/ImageInfoModuleView.h"
#include "inspectors/ImageInspector.h"
#include "notch/ToolRegistry.h"
#include "platform/Platform.h"

#include <algorithm>

namespace ostrelle {

namespace {

void registerClipboard(ToolRegistry &registry, Services &services)
{
    registry.add(KestroModule::Clipboard,
                 {.makeView = [&services](const ControlContext &context, QWidget &parent) -> ToolView & {
                      return makeChild<ClipboardModuleView>(
                          &parent, services.clipboard(), services.clipImages(), services.haptics(),
                          services.platform().fileIcons(), services.platform().clipboard(),
                          services.platform().popups(), services.scheduler(), context);
                  },
                  .badge = {},
                  .count = [&services]() -> std::optional<int> {
                      if (!services.clipboard().isLoaded())
                          return std::nullopt;
                      return static_cast<int>(services.clipboard().items().size());
                  },
                  .deliver = {}});
}

void registerShelf(ToolRegistry &registry, Services &services)
{
    registry.add(KestroModule::Assets,
                 {.makeView = [&services](const ControlContext &context, QWidget &parent) -> ToolView & {
                      const AssetsModuleView::Surroundings around{.shelf = services.shelf(),
                                                                  .thumbnails = services.assetThumbnails(),
                                                                  .presence = services.filePresence(),
                                                                  .preview = services.audioPreview(),
                                                                  .icons = services.platform().fileIcons(),
                                                                  .opening = services.platform().fileOpening(),
                                                                  .dragOut = services.platform().dragOut(),
                                                                  .popups = services.platform().popups()};
                      return makeChild<AssetsModuleView>(&parent, around, context);
                  },
                  .badge = [&services]() -> std::optional<ModuleBadge> {
                      const auto count = static_cast<int>(services.shelf().items().size());
                      return count > 0 ? std::optional<ModuleBadge>(CountBadge{count}) : std::nullopt;
                  },
                  .count = [&services] { return static_cast<int>(services.shelf().items().size()); },
                  .deliver = [&services](const QStringList &paths) { services.shelf().add(paths); },
                  .dropAction = QStringLiteral("Stage on the shelf")});
    QObject::connect(&services.shelf(), &AssetShelfService::itemsChanged, &registry,
                     [&registry] { registry.notifyBadgeChanged(KestroModule::Assets); });
}

void registerProjects(ToolRegistry &registry, Services &services)
{
    registry.add(KestroModule::Projects,
                 {.makeView = [&services](const ControlContext &context, QWidget &parent) -> ToolView & {
                      return makeChild<ProjectsModuleView>(
                          &parent, services.projects(), services.filePresence(), services.platform().fileOpening(),
                          services.platform().clipboard(), services.platform().popups(), context);
                  },
                  .badge = {},
                  .count = [&services] { return static_cast<int>(services.projects().projects().size()); },
                  .deliver = [&services](const QStringList &paths) { services.projects().add(paths); },
                  .dropAction = QStringLiteral("Pin as a project")});
}

void registerInspectors(ToolRegistry &registry, Services &services)
{
    const auto surroundings = [&services] {
        return InspectorView::Surroundings{.picker = services.filePicker(),
                                           .presence = services.filePresence(),
                                           .clipboard = services.platform().clipboard(),
                                           .haptics = services.haptics(),
                                           .preview = services.audioPreview(),
                                           .thumbnails = services.recentThumbnails(),
                                           .pictures = services.inspectedThumbnails()};
    };
    const auto loadFirst = [](FileInspector &inspector, const QStringList &paths) {
        if (!paths.isEmpty())
            inspector.load(paths.first());
    };
    const QString inspect = QStringLiteral("Read its metadata");
    registry.add(
        KestroModule::ImageInfo,
        {.makeView = [&services, surroundings](const ControlContext &context, QWidget &parent) -> ToolView & {
             return makeChild<ImageInfoModuleView>(&parent, services.imageInspector(), surroundings(), context);
         },
         .badge = {},
         .count = [&services] { return static_cast<int>(services.imageInspector().recents().items().size()); },
         .deliver = [&services, loadFirst](const QStringList &paths) { loadFirst(services.imageInspector(), paths); },
         .dropAction = inspect});
    registry.add(
        KestroModule::AudioInfo,
        {.makeView = [&services, surroundings](const ControlContext &context, QWidget &parent) -> ToolView & {
             return makeChild<AudioInfoModuleView>(&parent, services.audioInspector(), surroundings(), context);
         },
         .badge = {},
         .count = [&services] { return static_cast<int>(services.audioInspector().recents().items().size()); },
         .deliver = [&services, loadFirst](const QStringList &paths) { loadFirst(services.audioInspector(), paths); },
         .delivery = Tool::Delivery::OnceShown,
         .dropAction = inspect});
}

void registerColors(ToolRegistry &registry, Services &services)
{
    registry.add(KestroModule::Color,
                 {.makeView = [&services](const ControlContext &context, QWidget &parent) -> ToolView & {
                      const ColorModuleView::Surroundings around{.colors = services.colors(),
                                                                 .clipboard = services.platform().clipboard(),
                                                                 .haptics = services.haptics(),
                                                                 .popups = services.platform().popups(),
                                                                 .scheduler = services.scheduler()};
                      return makeChild<ColorModuleView>(&parent, around, context);
                  },
                  .badge = [&services]() -> std::optional<ModuleBadge> {
                      if (services.colors().recents().isEmpty())
                          return std::nullopt;
                      const auto shown = [](double component) { return std::clamp(component, 0.0, 1.0); };
                      const SampledColor &latest = services.colors().recents().first();
                      return DotBadge{shown(latest.r), shown(latest.g), shown(latest.b)};
                  },
                  .count = [&services] { return static_cast<int>(services.colors().recents().size()); }});
    QObject::connect(&services.colors(), &ColorService::recentsChanged, &registry,
                     [&registry] { registry.notifyBadgeChanged(KestroModule::Color); });
}

} // namespace

void registerTools(ToolRegistry &registry, Services &services)
{
    registerClipboard(registry, services);
    registerShelf(registry, services);
    registerProjects(registry, services);
    registerInspectors(registry, services);
    registerColors(registry, services);
}

} // namespace ostrelle
