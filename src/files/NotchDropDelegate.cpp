#include "files/NotchDropDelegate.h"

#include "core/SettingsStore.h"
#include "notch/NotchController.h"
#include "notch/NotchViewModel.h"
#include "notch/ToolRegistry.h"
#include "notch/ToolView.h"
#include "platform/FileDrags.h"

#include <utility>

namespace ostrelle {

QList<KestroModule> dropDestinations(const QSet<KestroModule> &enabled, const DragContents &contents)
{
    QList<KestroModule> destinations;
    const auto offer = [&](KestroModule module, bool takesIt) {
        if (takesIt && enabled.contains(module))
            destinations.append(module);
    };
    offer(KestroModule::Assets, true);
    offer(KestroModule::Projects, contents.hasFolder);
    offer(KestroModule::ImageInfo, contents.hasImage && !contents.hasFolder);
    offer(KestroModule::AudioInfo, contents.hasAudio && !contents.hasFolder);
    return destinations;
}

NotchDropDelegate::NotchDropDelegate(Surroundings surroundings, QObject *parent)
    : QObject(parent)
    , m_around(std::move(surroundings))
    , m_viewModel(m_around.controller.viewModel())
{
    FileDrags &drags = m_around.drags;
    connect(&drags, &FileDrags::entered, this, &NotchDropDelegate::entered);
    connect(&drags, &FileDrags::filesKnown, this, &NotchDropDelegate::filesKnown);
    connect(&drags, &FileDrags::moved, this, &NotchDropDelegate::moved);
    connect(&drags, &FileDrags::left, this, &NotchDropDelegate::left);
    connect(&drags, &FileDrags::dropped, this, &NotchDropDelegate::dropped);
}

NotchDropDelegate::~NotchDropDelegate() = default;

void NotchDropDelegate::entered(const QPointF &position)
{
    releaseTool();
    m_drag = Drag();
    m_drag->position = position;
    consider();
}

void NotchDropDelegate::filesKnown(const QStringList &paths)
{
    if (!m_drag)
        return;
    m_drag->paths = paths;
    m_drag->destinations.reset();
    m_drag->inspection.reset();
    releaseTool();
    if (!paths.isEmpty()) {
        m_drag->inspection = std::make_unique<DragInspection>(m_around.facts, m_around.scheduler, paths);
        connect(m_drag->inspection.get(), &DragInspection::found, this, [this](const DragContents &contents) {
            m_drag->destinations = dropDestinations(m_around.settings.enabledModules(), contents);
            // An open tool may judge otherwise by what the files are.
            releaseTool();
            consider();
        });
        m_drag->inspection->start();
    }
    consider();
}

void NotchDropDelegate::moved(const QPointF &position)
{
    if (!m_drag)
        return;
    m_drag->position = position;
    consider();
}

void NotchDropDelegate::left()
{
    releaseTool();
    m_drag.reset();
    m_viewModel.scheduleRoutingEnd();
}

/// What the notch does with the drag as it is now. Everything may have changed since the last time: a shortcut opens a
/// tool in the middle of a drag, another window closes it.
void NotchDropDelegate::consider()
{
    if (isPanelOpen() && isOverSurface()) {
        offerToTool();
        return;
    }
    releaseTool();
    if (isPanelOpen()) {
        m_around.drags.setAccepted(false);
        return;
    }
    const bool mayHoldFiles = !m_drag->paths || !m_drag->paths->isEmpty();
    const bool isRefused = !mayHoldFiles || (m_drag->destinations && m_drag->destinations->isEmpty());
    // The shelf takes every file, so that a release before they are known is not lost.
    m_around.drags.setAccepted(!isRefused && (m_drag->destinations || isShelfEnabled()));
    if (isRefused)
        m_viewModel.endRouting(/*keepOpen=*/false);
    else if (m_drag->destinations)
        m_viewModel.beginRouting(*m_drag->destinations);
    // Also before the destinations are known: the zones of a drag that has come back stay.
    if (!m_viewModel.dropTargets().isEmpty())
        m_viewModel.updateRouting(m_drag->position);
}

void NotchDropDelegate::offerToTool()
{
    ToolView *tool = m_around.openTool();
    if (tool == nullptr || tool != m_drag->tool)
        releaseTool();
    if (tool != nullptr && m_drag->tool == nullptr && m_drag->paths) {
        m_drag->tool = tool;
        m_drag->toolAccepts = !m_drag->paths->isEmpty() && tool->acceptsDrop(*m_drag->paths);
        if (m_drag->toolAccepts)
            tool->setDropTargeted(true);
    }
    m_around.drags.setAccepted(m_drag->toolAccepts);
}

void NotchDropDelegate::releaseTool()
{
    if (!m_drag)
        return;
    const bool wasTargeted = std::exchange(m_drag->toolAccepts, false);
    if (ToolView *tool = std::exchange(m_drag->tool, nullptr); tool != nullptr && wasTargeted)
        tool->setDropTargeted(false);
}

/// On an open tool, or on the selector, and not over landing zones.
bool NotchDropDelegate::isPanelOpen() const
{
    return m_viewModel.phase() == Phase::Expanded && m_viewModel.dropTargets().isEmpty();
}

/// While a drag is to be caught the panel hears of drags beside its surface, too.
bool NotchDropDelegate::isOverSurface() const
{
    return m_around.controller.surfaceRect().contains(m_drag->position);
}

bool NotchDropDelegate::isShelfEnabled() const
{
    return m_around.settings.enabledModules().contains(KestroModule::Assets);
}

void NotchDropDelegate::dropped(const QPointF &position, const QStringList &paths)
{
    if (!m_drag)
        return;
    m_drag->position = position;
    consider();
    if (m_drag->toolAccepts) {
        const QPointer<ToolView> tool = m_drag->tool;
        releaseTool();
        m_drag.reset();
        if (tool)
            tool->dropFiles(paths);
        return;
    }
    const std::optional<KestroModule> module = target();
    m_drag.reset();
    m_viewModel.endRouting(/*keepOpen=*/true);
    if (module && !paths.isEmpty())
        deliver(paths, *module);
}

/// The zone under the pointer, else the first one. Released before there were zones, the files are the shelf's.
std::optional<KestroModule> NotchDropDelegate::target() const
{
    if (const auto hovered = m_viewModel.hoveredDropZone())
        return hovered;
    if (const QList<KestroModule> targets = m_viewModel.dropTargets(); !targets.isEmpty())
        return targets.first();
    return isShelfEnabled() ? std::optional(KestroModule::Assets) : std::nullopt;
}

void NotchDropDelegate::deliver(const QStringList &paths, KestroModule module)
{
    const auto present = [this, module] {
        m_around.controller.present(module, NotchController::Focus::Take, NotchController::Opening::Explicit);
    };
    const Tool *tool = m_around.tools.find(module);
    if (tool == nullptr || !tool->deliver) {
        present();
    } else if (tool->delivery == Tool::Delivery::OnceShown) {
        present();
        tool->deliver(paths);
    } else {
        tool->deliver(paths);
        present();
    }
}

} // namespace ostrelle
