#include "files/AssetGridView.h"

#include "files/AssetDragPreview.h"
#include "files/AssetListModel.h"
#include "files/PathToolTip.h"
#include "notch/NotchAppearance.h"

#include <QApplication>
#include <QEnterEvent>
#include <QKeyEvent>
#include <QMouseEvent>

#include <algorithm>
#include <utility>

namespace ostrelle {
namespace {

QSet<QUuid> justThis(const QUuid &id)
{
    return id.isNull() ? QSet<QUuid>() : QSet<QUuid>({id});
}

} // namespace

AssetGridView::AssetGridView(const ControlContext &context, AssetListModel &assets, AssetThumbnails &thumbnails,
                             FileIcons &icons, QWidget *parent)
    : TileGrid(context, assets, thumbnails, icons, parent)
    , m_selection(*this)
    , m_hover(context, [this] { viewport()->update(); })
    , m_playBadge(context, [this] { viewport()->update(); })
    , m_ring(context, [this] { viewport()->update(); })
{
    setAccessibleName(QStringLiteral("Shelf"));
    setSelectionMode(ExtendedSelection);
    viewport()->setMouseTracking(true);
    connect(&assets, &QAbstractItemModel::dataChanged, this, &AssetGridView::tilesMoved);
    tilesMoved();
}

AssetTile AssetGridView::tile(int row) const
{
    const QUuid id = assets().item(row).id;
    AssetTile tile = TileGrid::tile(row);
    tile.isSelected = m_selection.contains(row);
    tile.showsFocus = m_showsFocus && hasFocus() && row == m_selection.current();
    tile.isPlaying = id == m_playing;
    tile.isPlayPressed = m_pressed == m_hit && m_pressed == Hit{Part::PlayBadge, id};
    tile.isRemovePressed = m_pressed == m_hit && m_pressed == Hit{Part::RemoveBadge, id};
    tile.hover = m_hover.amount(id);
    tile.playBadge = m_playBadge.amount(id);
    tile.playingRing = m_ring.amount(id);
    return tile;
}

QList<QUuid> AssetGridView::selectedIds() const
{
    QList<QUuid> ids;
    for (const int row : m_selection.rows())
        ids.append(assets().item(row).id);
    return ids;
}

QList<QUuid> AssetGridView::idsFor(const QUuid &id)
{
    const int row = assets().rowOf(id);
    if (row < 0)
        return {};
    if (!m_selection.contains(row))
        m_selection.choose(row);
    return selectedIds();
}

void AssetGridView::tilesMoved()
{
    m_playing = {};
    for (int row = 0; row < assets().rowCount() && m_playing.isNull(); ++row) {
        if (assets().isPlaying(row))
            m_playing = assets().item(row).id;
    }
    m_ring.set(justThis(m_playing));
    refreshHover();
    viewport()->update();
}

AssetGridView::Hit AssetGridView::hitAt(const QPointF &position) const
{
    // The remove badge is there under the pointer only, and reaches beyond its tile.
    const int hovered = assets().rowOf(m_hit.id);
    if (hovered >= 0) {
        const QRectF badge = AssetTile::removeBadgeRect(context().appearance.reducesMotion());
        if (badge.contains(position - tileRect(hovered).topLeft()))
            return {Part::RemoveBadge, m_hit.id};
    }
    const QModelIndex index = indexAt(position.toPoint());
    if (!index.isValid())
        return {};
    const QRectF tile = tileRect(index.row());
    const QUuid id = assets().item(index.row()).id;
    if (AssetTile::removeBadgeRect(false).contains(position - tile.topLeft()))
        return {Part::RemoveBadge, id};
    if (AssetTile::playBadgeRect().contains(position - tile.topLeft()) && assets().isPlayable(index.row()))
        return {Part::PlayBadge, id};
    return {Part::Tile, id};
}

QString AssetGridView::toolTipOf(const Hit &hit) const
{
    switch (hit.part) {
    case Part::None:
        return {};
    case Part::RemoveBadge:
        return QStringLiteral("Remove from shelf");
    case Part::PlayBadge:
        return hit.id == m_playing ? QStringLiteral("Stop") : QStringLiteral("Play");
    case Part::Tile:
        return pathToolTip(assets().item(assets().rowOf(hit.id)).path);
    }
    Q_UNREACHABLE();
}

void AssetGridView::refreshHover()
{
    m_hit = m_pointer ? hitAt(*m_pointer) : Hit();
    QSet<QUuid> badges = justThis(m_playing);
    const int row = assets().rowOf(m_hit.id);
    if (row >= 0 && assets().isPlayable(row))
        badges.insert(m_hit.id);
    m_hover.set(justThis(m_hit.id));
    m_playBadge.set(badges);
    viewport()->setToolTip(toolTipOf(m_hit));
    viewport()->update();
}

bool AssetGridView::viewportEvent(QEvent *event)
{
    switch (event->type()) {
    case QEvent::Enter: // also when a menu above has closed
        m_pointer = static_cast<QEnterEvent *>(event)->position();
        refreshHover();
        break;
    case QEvent::Leave:
        m_pointer.reset();
        refreshHover();
        break;
    case QEvent::ToolTip:
        return false; // the viewport's own
    default:
        break;
    }
    return QListView::viewportEvent(event);
}

void AssetGridView::mousePressEvent(QMouseEvent *event)
{
    m_pointer = event->position();
    refreshHover();
    showFocus(false);
    m_clicked = {};
    if (event->button() != Qt::LeftButton)
        return;
    m_pressed = m_hit;
    m_pressPosition = event->position();
    if (m_hit.part == Part::Tile) {
        m_clicked = m_hit.id;
        const int row = assets().rowOf(m_hit.id);
        selectByPress(row, event->modifiers());
        // It may be dragged in a moment, and icons take one to come.
        (void)icon(row, AssetDragPreview::kSide);
    } else if (m_hit.part == Part::None && event->modifiers() == Qt::NoModifier) {
        m_selection.clear();
    }
}

void AssetGridView::selectByPress(int row, Qt::KeyboardModifiers modifiers)
{
    if (modifiers.testFlag(Qt::ShiftModifier))
        m_selection.extendTo(row);
    else if (modifiers.testFlag(Qt::ControlModifier))
        m_selection.toggle(row);
    else if (!m_selection.contains(row))
        m_selection.choose(row);
    // Of several selected ones, only the release tells a drag of all from a click on one.
}

void AssetGridView::mouseMoveEvent(QMouseEvent *event)
{
    m_pointer = event->position();
    refreshHover();
    const bool isHeld = event->buttons().testFlag(Qt::LeftButton) && m_pressed.part == Part::Tile;
    const double distance = (event->position() - m_pressPosition).manhattanLength();
    if (!isHeld || distance < QApplication::startDragDistance())
        return;
    const QUuid grabbed = std::exchange(m_pressed, {}).id;
    const int row = assets().rowOf(grabbed);
    if (row >= 0)
        Q_EMIT dragged(grabbed, m_selection.contains(row) ? selectedIds() : QList<QUuid>({grabbed}));
}

void AssetGridView::mouseReleaseEvent(QMouseEvent *event)
{
    const Hit pressed = std::exchange(m_pressed, {});
    m_pointer = event->position();
    refreshHover();
    if (event->button() != Qt::LeftButton || pressed != m_hit)
        return;
    switch (pressed.part) {
    case Part::RemoveBadge:
        Q_EMIT removed({pressed.id});
        break;
    case Part::PlayBadge:
        Q_EMIT previewToggled(pressed.id);
        break;
    case Part::Tile:
        if (event->modifiers() == Qt::NoModifier)
            m_selection.choose(assets().rowOf(pressed.id));
        break;
    case Part::None:
        break;
    }
}

void AssetGridView::mouseDoubleClickEvent(QMouseEvent *event)
{
    const QUuid clicked = m_clicked;
    mousePressEvent(event);
    if (event->button() != Qt::LeftButton || m_pressed.part != Part::Tile || m_pressed.id != clicked)
        return;
    m_pressed = {};
    m_clicked = {};
    Q_EMIT opened({clicked});
}

void AssetGridView::contextMenuEvent(QContextMenuEvent *event)
{
    const bool isByKey = event->reason() == QContextMenuEvent::Keyboard;
    const QModelIndex index = isByKey ? currentIndex() : indexAt(event->pos());
    if (!index.isValid())
        return;
    const QPointF position = isByKey ? tileRect(index.row()).center() : QPointF(event->pos());
    Q_EMIT menuRequested(assets().item(index.row()).id, position);
}

bool AssetGridView::moveByKey(const QKeyEvent &event)
{
    const int pageRows = std::max(1, viewport()->height() / static_cast<int>(AssetGridLayout::kRowPitch));
    const auto target = gridLayout().stepped(m_selection.current(), static_cast<Qt::Key>(event.key()), pageRows);
    const Qt::KeyboardModifiers others = event.modifiers() & ~(Qt::KeypadModifier | Qt::ShiftModifier);
    if (!target || others != Qt::NoModifier)
        return false;
    if (event.modifiers().testFlag(Qt::ShiftModifier))
        m_selection.extendTo(*target);
    else
        m_selection.choose(*target);
    showFocus(true);
    scrollTo(currentIndex());
    return true;
}

void AssetGridView::removeSelected()
{
    const QList<int> rows = m_selection.rows();
    if (rows.isEmpty())
        return;
    Q_EMIT removed(selectedIds());
    // What took the place of the first one is next.
    if (assets().rowCount() > 0)
        m_selection.choose(std::min(rows.first(), assets().rowCount() - 1));
}

void AssetGridView::keyPressEvent(QKeyEvent *event)
{
    event->ignore();
    if (assets().rowCount() == 0)
        return;
    if (event->matches(QKeySequence::SelectAll)) {
        m_selection.chooseAll();
    } else if (!moveByKey(*event)) {
        if ((event->modifiers() & ~Qt::KeyboardModifiers(Qt::KeypadModifier)) != Qt::NoModifier)
            return;
        switch (event->key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
            Q_EMIT opened(selectedIds());
            break;
        case Qt::Key_Space:
            if (currentIndex().isValid())
                Q_EMIT previewToggled(assets().item(currentIndex().row()).id);
            break;
        case Qt::Key_Delete:
            removeSelected();
            break;
        default:
            return;
        }
    }
    event->accept();
}

void AssetGridView::showFocus(bool shows)
{
    if (std::exchange(m_showsFocus, shows) != shows)
        viewport()->update();
}

void AssetGridView::focusInEvent(QFocusEvent *event)
{
    if (event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason)
        showFocus(true);
    if (m_showsFocus && m_selection.current() < 0 && assets().rowCount() > 0)
        m_selection.choose(0);
    // NOLINTNEXTLINE(bugprone-parent-virtual-call): the item view's own would make the first tile the current one
    QAbstractScrollArea::focusInEvent(event);
    viewport()->update();
}

void AssetGridView::focusOutEvent(QFocusEvent *event)
{
    QListView::focusOutEvent(event);
    viewport()->update();
}

} // namespace ostrelle
