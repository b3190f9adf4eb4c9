#include "files/TileGrid.h"

#include "files/AssetListModel.h"
#include "files/AssetThumbnails.h"
#include "notch/NotchAppearance.h"
#include "notch/controls/EdgeFade.h"
#include "platform/FileIcons.h"

#include <QPaintEvent>
#include <QPainter>
#include <QScrollBar>
#include <QWheelEvent>

#include <algorithm>
#include <utility>

namespace ostrelle {
namespace {

constexpr double kFade = 22;
constexpr double kWheelStep = AssetGridLayout::kRowPitch;

} // namespace

TileGrid::TileGrid(const ControlContext &context, AssetListModel &assets, AssetThumbnails &thumbnails, FileIcons &icons,
                   QWidget *parent)
    : QListView(parent)
    , m_context(context)
    , m_assets(assets)
    , m_thumbnails(thumbnails)
    , m_icons(icons)
    , m_scroll(context, *verticalScrollBar(), kWheelStep)
    , m_glide(context, [this] { viewport()->update(); })
{
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(ScrollPerPixel);
    setEditTriggers(NoEditTriggers);
    setAutoScroll(false);
    viewport()->setAutoFillBackground(false);
    setModel(&assets);
    for (int row = 0; row < assets.rowCount(); ++row)
        m_ids.append(assets.item(row).id);
    connect(&assets, &AssetListModel::stepped, this, &TileGrid::followSteps);
    connect(&thumbnails, &AssetThumbnails::arrived, this, &TileGrid::updateTile);
    connect(&icons, &FileIcons::changed, viewport(), qOverload<>(&QWidget::update));
    connect(&context.appearance, &NotchAppearance::changed, viewport(), qOverload<>(&QWidget::update));
}

TileGrid::~TileGrid()
{
    m_thumbnails.want({}, 0, devicePixelRatioF());
}

AssetGridLayout TileGrid::gridLayout() const
{
    return {.count = m_assets.rowCount(), .width = static_cast<double>(viewport()->width())};
}

QRectF TileGrid::tileRect(int row) const
{
    return gridLayout().tile(row).translated(0, -verticalOffset());
}

QModelIndex TileGrid::indexAt(const QPoint &position) const
{
    const auto row = gridLayout().tileAt(QPointF(position) + QPointF(0, verticalOffset()));
    return row ? m_assets.index(*row) : QModelIndex();
}

QRect TileGrid::visualRect(const QModelIndex &index) const
{
    return index.isValid() ? tileRect(index.row()).toRect() : QRect();
}

QRegion TileGrid::visualRegionForSelection(const QItemSelection &) const
{
    return viewport()->rect();
}

int TileGrid::verticalOffset() const
{
    return verticalScrollBar()->value();
}

void TileGrid::doItemsLayout()
{
    // NOLINTNEXTLINE(bugprone-parent-virtual-call): the list in between lays out one column
    QAbstractItemView::doItemsLayout();
}

void TileGrid::updateGeometries()
{
    // NOLINTNEXTLINE(bugprone-parent-virtual-call): the list in between lays out one column
    QAbstractItemView::updateGeometries();
    const int content = static_cast<int>(gridLayout().contentHeight());
    verticalScrollBar()->setRange(0, std::max(content - viewport()->height(), 0));
    verticalScrollBar()->setPageStep(viewport()->height());
    m_scroll.clamp();
}

void TileGrid::resizeEvent(QResizeEvent *event)
{
    // NOLINTNEXTLINE(bugprone-parent-virtual-call): the list in between lays out one column
    QAbstractItemView::resizeEvent(event);
}

void TileGrid::scrollContentsBy(int, int)
{
    viewport()->update();
    tilesMoved();
}

void TileGrid::scrollTo(const QModelIndex &index, ScrollHint)
{
    if (!index.isValid())
        return;
    executeDelayedItemsLayout();
    const QRectF tile = gridLayout().tile(index.row());
    const double top = tile.top() - AssetGridLayout::kPadding;
    const double bottom = tile.top() + tile.height() + kFade;
    if (top < m_scroll.target())
        m_scroll.moveTo(top);
    else if (bottom > m_scroll.target() + viewport()->height())
        m_scroll.moveTo(bottom - viewport()->height());
}

void TileGrid::wheelEvent(QWheelEvent *event)
{
    m_scroll.turnWheel(*event);
    event->accept();
}

void TileGrid::tilesMoved()
{
}

void TileGrid::followSteps()
{
    const AssetGridLayout before{.count = static_cast<int>(m_ids.size()), .width = gridLayout().width};
    const double scrolledBefore = verticalOffset();
    QHash<QUuid, int> rowsBefore;
    for (int row = 0; row < m_ids.size(); ++row)
        rowsBefore.insert(m_ids[row], row);
    m_ids.clear();
    for (int row = 0; row < m_assets.rowCount(); ++row)
        m_ids.append(m_assets.item(row).id);
    executeDelayedItemsLayout();

    TileGlide::Change change;
    const int page = viewport()->height();
    const auto [first, last] = gridLayout().tilesBetween(verticalOffset() - page, verticalOffset() + 2 * page);
    for (int row = first; row <= last; ++row) {
        const QUuid id = m_ids[row];
        const auto rowBefore = rowsBefore.constFind(id);
        if (rowBefore == rowsBefore.constEnd()) {
            change.arriving.insert(id);
            continue;
        }
        const QPointF placeBefore = before.tile(*rowBefore).topLeft() - QPointF(0, scrolledBefore);
        const QPointF offset = placeBefore + m_glide.offset(id) - tileRect(row).topLeft();
        if (!offset.isNull())
            change.offsets.insert(id, offset);
    }
    for (const Shown &shown : std::as_const(m_shown)) {
        if (m_assets.rowOf(shown.id) < 0)
            change.leaving.append({.tile = shown.tile, .place = shown.place});
    }
    m_shown.clear();
    m_glide.begin(std::move(change));
    tilesMoved();
}

void TileGrid::updateTile(const QUuid &id)
{
    const int row = m_assets.rowOf(id);
    if (m_glide.isMoving())
        viewport()->update();
    else if (row >= 0)
        viewport()->update(AssetTile::paintedRect(tileRect(row).topLeft()).toAlignedRect());
}

AssetTile TileGrid::tile(int row) const
{
    const QUuid id = m_assets.item(row).id;
    const FileFacts facts = m_assets.facts(row);
    AssetTile tile;
    tile.name = m_assets.name(row);
    if (facts.isPlainFile() || facts.kind == FileFacts::Kind::Unknown)
        tile.picture = m_thumbnails.picture(id);
    if (tile.picture.isNull())
        tile.icon = icon(row, AssetTile::kIconSide);
    tile.symbol = facts.isFolder() ? QStringLiteral("folder") : QStringLiteral("doc");
    tile.isMissing = !facts.isPresent();
    return tile;
}

std::optional<QImage> TileGrid::icon(int row, int side) const
{
    const double ratio = devicePixelRatioF();
    return m_assets.facts(row).isFolder() ? m_icons.folderIcon(side, ratio)
                                          : m_icons.iconFor(m_assets.item(row).path, side, ratio);
}

QList<TileGrid::Shown> TileGrid::shownTiles(int first, int last) const
{
    QList<Shown> shown;
    const QRectF view(viewport()->rect());
    for (int row = first; row <= last; ++row) {
        const QUuid id = m_assets.item(row).id;
        const QRectF rect = tileRect(row).translated(m_glide.offset(id));
        if (rect.intersects(view))
            shown.append({.id = id, .tile = tile(row), .place = rect.topLeft(), .opacity = m_glide.presence(id)});
    }
    return shown;
}

void TileGrid::wantPictures(int first, int last)
{
    QList<ShelfItem> wanted;
    for (int row = first; row <= last; ++row)
        wanted.append(m_assets.item(row));
    const qsizetype inSight = wanted.size();
    const int count = m_assets.rowCount();
    const auto most = static_cast<qsizetype>(std::min(count, AssetThumbnails::kKept));
    for (int distance = 1; wanted.size() < most; ++distance) {
        if (last + distance < count)
            wanted.append(m_assets.item(last + distance));
        if (first - distance >= 0 && wanted.size() < most)
            wanted.append(m_assets.item(first - distance));
    }
    m_thumbnails.want(wanted, inSight, devicePixelRatioF());
}

void TileGrid::paintEvent(QPaintEvent *event)
{
    executeDelayedItemsLayout();
    const int height = viewport()->height();
    const auto inSight = gridLayout().tilesBetween(verticalOffset(), verticalOffset() + height);
    wantPictures(inSight.first, inSight.second);
    // While tiles glide, some of the next pages still reach into the view.
    const int reach = m_glide.isMoving() ? height : 0;
    const auto [first, last] = gridLayout().tilesBetween(verticalOffset() - reach, verticalOffset() + height + reach);
    m_shown = shownTiles(first, last);

    const QRectF dirty(event->rect());
    const auto paintTile = [&](QPainter &painter, const AssetTile &tile, const QPointF &place, double opacity) {
        if (!AssetTile::paintedRect(place).intersects(dirty))
            return;
        painter.save();
        painter.setOpacity(opacity);
        painter.translate(place);
        tile.paint(painter, m_context, m_cache);
        painter.restore();
    };
    QPainter painter(viewport());
    const double below = verticalScrollBar()->maximum() - verticalScrollBar()->value();
    EdgeFade fade{.bottom = std::clamp(below, 0.0, std::min(kFade, height / 2.0))};
    // The fade costs an image of its own.
    if (dirty.y() + dirty.height() <= height - fade.bottom)
        fade.bottom = 0;
    paintEdgeFaded(painter, QRectF(viewport()->rect()), fade, [&](QPainter &onto) {
        for (const TileGlide::Leaving &leaving : m_glide.leaving())
            paintTile(onto, leaving.tile, leaving.place, m_glide.leavingOpacity());
        for (const Shown &shown : std::as_const(m_shown))
            paintTile(onto, shown.tile, shown.place, shown.opacity);
    });
}

} // namespace ostrelle
