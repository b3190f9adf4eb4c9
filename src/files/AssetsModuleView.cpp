#include "files/AssetsModuleView.h"

#include "files/AssetDragPreview.h"
#include "files/AssetGridView.h"
#include "files/AssetShelfService.h"
#include "files/AudioPreview.h"
#include "files/ThumbnailProgress.h"
#include "foundation/MakeChild.h"
#include "notch/controls/DropOverlay.h"
#include "notch/controls/DropWell.h"
#include "notch/controls/EmptyStateView.h"
#include "notch/controls/GlyphButton.h"
#include "notch/controls/ItemCount.h"
#include "notch/controls/NotchMenu.h"
#include "platform/DragOut.h"
#include "platform/FileOpening.h"
#include "platform/Popups.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace ostrelle {
namespace {

/// Header and tool strip.
constexpr double kAboveGrid = 106;
constexpr double kEmptyHeight = 158;
constexpr double kTallestGrid = 230;
constexpr int kWellMargin = 14;
constexpr int kProgressTop = 3;

EmptyStateView::Content nothingThere()
{
    return {.symbol = QStringLiteral("tray.and.arrow.down"),
            .message = QStringLiteral("Drop files here"),
            .hint = QStringLiteral("They stay on the shelf until you remove them")};
}

} // namespace

AssetsModuleView::AssetsModuleView(const Surroundings &surroundings, const ControlContext &context, QWidget *parent)
    : ToolView(parent)
    , m_around(surroundings)
    , m_context(context)
    , m_assets(surroundings.shelf, surroundings.presence, surroundings.preview)
    , m_well(makeChild<DropWell>(this, context))
    , m_empty(makeChild<EmptyStateView>(&m_well, context, nothingThere()))
    , m_grid(makeChild<AssetGridView>(this, context, m_assets, surroundings.thumbnails, surroundings.icons))
    , m_progress(makeChild<ThumbnailProgress>(this, context))
    , m_overlay(makeChild<DropOverlay>(this, context))
    , m_count(makeChild<ItemCount>(this, context))
    , m_clear(makeChild<GlyphButton>(this, context,
                                     GlyphButton::Content{.symbol = QStringLiteral("trash"),
                                                          .help = QStringLiteral("Clear shelf"),
                                                          .purpose = GlyphButton::Purpose::Destructive}))
{
    m_count.hide();
    m_clear.hide();
    connect(&m_clear, &QAbstractButton::clicked, &m_around.shelf, &AssetShelfService::clear);
    connect(&m_grid, &AssetGridView::opened, this, &AssetsModuleView::open);
    connect(&m_grid, &AssetGridView::removed, &m_around.shelf, &AssetShelfService::remove);
    connect(&m_grid, &AssetGridView::previewToggled, this, &AssetsModuleView::togglePreview);
    connect(&m_grid, &AssetGridView::dragged, this, &AssetsModuleView::dragOut);
    connect(&m_grid, &AssetGridView::menuRequested, this, &AssetsModuleView::openMenu);
    connect(&m_assets, &AssetListModel::stepped, this, &AssetsModuleView::followShelf);
    // Bound to the line: the grid has a last word to the pictures when this view is half gone.
    connect(
        &m_around.thumbnails, &AssetThumbnails::progressChanged, &m_progress,
        [&progress = m_progress, &thumbnails = m_around.thumbnails] { progress.setProgress(thumbnails.progress()); });
    followShelf();
}

AssetsModuleView::~AssetsModuleView() = default;

std::optional<double> AssetsModuleView::wantedBodyHeight() const
{
    const double grid = m_assets.rowCount() == 0 ? kEmptyHeight : m_grid.gridLayout().contentHeight();
    return std::min(grid, kTallestGrid) + kAboveGrid;
}

QList<QWidget *> AssetsModuleView::headerActions()
{
    if (m_assets.rowCount() == 0)
        return {};
    return {&m_count, &m_clear};
}

void AssetsModuleView::appeared()
{
    m_grid.setFocus(Qt::OtherFocusReason);
}

bool AssetsModuleView::acceptsDrop(const QStringList &paths) const
{
    return !paths.isEmpty();
}

void AssetsModuleView::setDropTargeted(bool targeted)
{
    m_isTargeted = targeted;
    showTarget();
}

void AssetsModuleView::showTarget()
{
    const bool isEmpty = m_assets.rowCount() == 0;
    m_well.setTargeted(m_isTargeted && isEmpty);
    m_overlay.setTargeted(m_isTargeted && !isEmpty);
}

bool AssetsModuleView::dropFiles(const QStringList &paths)
{
    m_around.shelf.add(paths);
    return true;
}

QStringList AssetsModuleView::pathsOf(const QList<QUuid> &ids) const
{
    QStringList paths;
    for (const QUuid &id : ids) {
        const int row = m_assets.rowOf(id);
        if (row >= 0)
            paths.append(m_assets.item(row).path);
    }
    return paths;
}

void AssetsModuleView::open(const QList<QUuid> &ids)
{
    for (const QString &path : pathsOf(ids))
        m_around.opening.open(path, {});
}

void AssetsModuleView::togglePreview(const QUuid &id)
{
    const int row = m_assets.rowOf(id);
    if (row >= 0 && m_assets.isPlayable(row))
        m_around.preview.toggle(m_assets.item(row).path);
}

void AssetsModuleView::dragOut(const QUuid &grabbed, const QList<QUuid> &ids)
{
    FileDrag drag;
    for (const QUuid &id : ids) {
        const int row = m_assets.rowOf(id);
        if (row >= 0 && m_assets.facts(row).isPresent())
            drag.paths.append(m_assets.item(row).path);
    }
    if (drag.paths.isEmpty())
        return;
    const int row = m_assets.rowOf(grabbed);
    const AssetTile tile = m_grid.tile(row);
    const AssetDragPreview preview{.picture = tile.picture,
                                   .icon =
                                       m_grid.icon(row, AssetDragPreview::kSide).value_or(tile.icon.value_or(QImage())),
                                   .symbol = tile.symbol,
                                   .count = static_cast<int>(drag.paths.size())};
    drag.picture = preview.rendered(devicePixelRatioF());
    drag.hotSpot = {AssetDragPreview::kSide / 2, AssetDragPreview::kSide / 2};
    m_around.dragOut.start(m_grid, drag, [](DragOut::Outcome) {});
}

void AssetsModuleView::openMenu(const QUuid &id, const QPointF &position)
{
    const int row = m_assets.rowOf(id);
    if (row < 0)
        return;
    const QString path = m_assets.item(row).path;
    const QList<QUuid> ids = m_grid.idsFor(id);
    m_menu = std::make_unique<NotchMenu>(m_context.appearance, this);
    if (m_assets.isPlayable(row)) {
        m_menu->addEntry(m_assets.isPlaying(row) ? QStringLiteral("Stop") : QStringLiteral("Play"), this,
                         [this, id] { togglePreview(id); });
    }
    m_menu->addEntry(QStringLiteral("Open"), this, [this, ids] { open(ids); });
    m_menu->addEntry(QStringLiteral("Reveal in Finder"), this, [this, path] { m_around.opening.reveal(path, {}); });
    m_menu->addSeparator();
    m_menu->addEntry(
        QStringLiteral("Remove from Shelf"), this, [this, ids] { m_around.shelf.remove(ids); },
        NotchMenu::Purpose::Destructive);
    m_around.popups.openMenu(*m_menu, *m_grid.viewport(), position);
}

void AssetsModuleView::undo()
{
    if (m_around.shelf.canUndo())
        m_around.shelf.undo();
}

void AssetsModuleView::followShelf()
{
    const int count = m_assets.rowCount();
    const int before = std::exchange(m_shownCount, count);
    m_count.setCount(count);
    // The chrome shows them when it takes them over.
    for (QWidget *action : {static_cast<QWidget *>(&m_count), static_cast<QWidget *>(&m_clear)})
        action->setVisible(count > 0 && action->parentWidget() != this);
    if (count > 0) {
        m_empty.hide();
    } else if (before > 0) {
        m_empty.appear();
        // The button that had it may be gone with the last entry.
        if (m_clear.hasFocus())
            m_grid.setFocus(Qt::OtherFocusReason);
    }
    m_well.setVisible(count == 0);
    showTarget();
    if (before != count)
        Q_EMIT headerActionsChanged();
    const double height = *wantedBodyHeight();
    if (std::exchange(m_wantedHeight, height) != height)
        Q_EMIT wantedBodyHeightChanged();
}

void AssetsModuleView::resizeEvent(QResizeEvent *)
{
    m_well.setGeometry(rect().adjusted(kWellMargin, kWellMargin, -kWellMargin, -kWellMargin));
    m_grid.setGeometry(rect());
    m_overlay.setGeometry(rect());
    constexpr int kLine = static_cast<int>(AssetGridLayout::kWidth);
    m_progress.setGeometry((width() - kLine) / 2, kProgressTop, kLine, ThumbnailProgress::kHeight);
}

} // namespace ostrelle
