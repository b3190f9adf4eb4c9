#include "files/RecentRowsView.h"

#include "files/RecentListModel.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <utility>

namespace ostrelle {
namespace {

constexpr RowListMeasures kMeasures{
    .pitch = RecentRow::kHeight, .rowHeight = RecentRow::kHeight, .topPadding = 0, .bottomPadding = 0, .fade = 18};

QSet<QUuid> onlyRow(const QUuid &id)
{
    return id.isNull() ? QSet<QUuid>() : QSet<QUuid>({id});
}

} // namespace

RecentRowsView::Delegate::Delegate(RecentRowsView &view)
    : m_view(view)
{
}

void RecentRowsView::Delegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                                     const QModelIndex &index) const
{
    const auto entry = index.data(RecentListModel::kEntryRole).value<RecentEntry>();
    painter->setOpacity(painter->opacity() * m_view.m_opacity);
    m_view.rowLook(entry).paint(*painter, QRectF(option.rect), m_view.context());
}

QSize RecentRowsView::Delegate::sizeHint(const QStyleOptionViewItem &, const QModelIndex &) const
{
    return {0, RecentRow::kHeight};
}

RecentRowsView::RecentRowsView(const ControlContext &context, RecentListModel &recents, QString symbol, QWidget *parent)
    : RowListView(context, kMeasures, parent)
    , m_recents(recents)
    , m_symbol(std::move(symbol))
    , m_delegate(*this)
    , m_tint(context, [this] { viewport()->update(); })
    , m_playBadge(context, [this] { viewport()->update(); })
    , m_ring(context, [this] { viewport()->update(); })
    , m_shake(context, [this] { viewport()->update(); })
{
    setAccessibleName(QStringLiteral("Recent files"));
    setFocusPolicy(Qt::TabFocus);
    setItemDelegate(&m_delegate);
    setModel(&recents);
    connect(&recents, &RecentListModel::aboutToFollow, this, &RecentRowsView::beginGlide);
    connect(&recents, &RecentListModel::followed, this, &RecentRowsView::followModel);
    connect(&recents, &QAbstractItemModel::dataChanged, this, &RecentRowsView::refresh);
    refresh();
}

RecentRowsView::~RecentRowsView() = default;

QUuid RecentRowsView::idAt(int row) const
{
    return m_recents.idAt(row);
}

void RecentRowsView::setOpacity(double opacity)
{
    if (std::exchange(m_opacity, opacity) != opacity)
        viewport()->update();
}

void RecentRowsView::shake(const QUuid &id)
{
    m_shaken = id;
    m_shake.start();
}

RecentRow RecentRowsView::rowLook(const RecentEntry &entry) const
{
    RecentRow row{.entry = entry, .symbol = m_symbol};
    row.isPlayPressed = m_pressed == m_hit && m_pressed == Hit{Part::PlayBadge, entry.id};
    row.isForgetHovered = m_hit == Hit{Part::Forget, entry.id};
    row.tint = m_tint.amount(entry.id);
    row.playBadge = m_playBadge.amount(entry.id);
    row.ring = m_ring.amount(entry.id);
    if (entry.id == m_shaken) {
        row.playShift = m_shake.offset();
        row.playOpacity = m_shake.opacity();
    }
    return row;
}

RecentRowsView::Hit RecentRowsView::hitAt(const QPointF &position) const
{
    const QModelIndex index = indexAt(position.toPoint());
    if (!index.isValid())
        return {};
    const QUuid id = idAt(index.row());
    const QRectF plate = rowRect(index.row());
    if (RecentRow::forgetRect(plate).contains(position))
        return {Part::Forget, id};
    if (RecentRow::playBadgeRect(plate).contains(position) && m_recents.entry(index.row()).isPlayable)
        return {Part::PlayBadge, id};
    return {Part::Row, id};
}

QString RecentRowsView::toolTipOf(const Hit &hit) const
{
    const int row = m_recents.rowOf(hit.id);
    switch (hit.part) {
    case Part::None:
        return {};
    case Part::Forget:
        return QStringLiteral("Forget this file");
    case Part::PlayBadge:
        return m_recents.entry(row).isPlaying ? QStringLiteral("Stop") : QStringLiteral("Play");
    case Part::Row:
        return m_recents.index(row).data(Qt::ToolTipRole).toString();
    }
    Q_UNREACHABLE();
}

/// The row under the pointer is the active one, also when the list has moved under it.
void RecentRowsView::followPointer()
{
    m_hit = m_pointer ? hitAt(*m_pointer) : Hit();
    if (!m_hit.id.isNull() || m_isByPointer) {
        m_active = m_hit.id;
        m_isByPointer = !m_hit.id.isNull();
    }
    refresh();
}

void RecentRowsView::followModel()
{
    endGlide();
    const int wasAt = currentIndex().row();
    if (m_recents.rowOf(m_active) < 0) {
        m_active = {};
        m_isByPointer = false;
    }
    if (m_pointer)
        followPointer();
    else if (hasFocus() && m_active.isNull() && rowCount() > 0)
        choose(std::clamp(wasAt, 0, rowCount() - 1));
    refresh();
}

void RecentRowsView::refresh()
{
    const int active = m_recents.rowOf(m_active);
    const QModelIndex index = active >= 0 ? m_recents.index(active) : QModelIndex();
    if (index != currentIndex() || selectionModel()->isSelected(index) != index.isValid())
        selectionModel()->setCurrentIndex(index, index.isValid() ? QItemSelectionModel::ClearAndSelect
                                                                 : QItemSelectionModel::Clear);
    QUuid playing;
    for (int row = 0; row < rowCount() && playing.isNull(); ++row) {
        if (m_recents.entry(row).isPlaying)
            playing = idAt(row);
    }
    QSet<QUuid> badges = onlyRow(playing);
    if (active >= 0 && m_recents.entry(active).isPlayable)
        badges.insert(m_active);
    m_tint.set(onlyRow(m_isByPointer || hasFocus() ? m_active : QUuid()));
    m_ring.set(onlyRow(playing));
    m_playBadge.set(badges);
    viewport()->setToolTip(toolTipOf(m_hit));
    viewport()->update();
}

void RecentRowsView::choose(int row)
{
    m_active = idAt(row);
    m_isByPointer = false;
    refresh();
    scrollTo(currentIndex());
}

bool RecentRowsView::chooseByKey(int key)
{
    const int last = rowCount() - 1;
    const int active = m_recents.rowOf(m_active);
    int step = 0;
    switch (key) {
    case Qt::Key_Up:
        step = -1;
        break;
    case Qt::Key_Down:
        step = 1;
        break;
    case Qt::Key_PageUp:
        step = -rowsPerPage();
        break;
    case Qt::Key_PageDown:
        step = rowsPerPage();
        break;
    case Qt::Key_Home:
        step = -rowCount();
        break;
    case Qt::Key_End:
        step = rowCount();
        break;
    default:
        return false;
    }
    const int from = active >= 0 ? active : step > 0 ? -1 : last + 1;
    choose(std::clamp(from + step, 0, last));
    return true;
}

bool RecentRowsView::viewportEvent(QEvent *event)
{
    switch (event->type()) {
    case QEvent::Leave:
        m_pointer.reset();
        followPointer();
        break;
    case QEvent::ToolTip:
        return false; // the viewport's own
    default:
        break;
    }
    return RowListView::viewportEvent(event);
}

void RecentRowsView::mousePressEvent(QMouseEvent *event)
{
    m_pointer = event->position();
    followPointer();
    m_pressed = event->button() == Qt::LeftButton ? m_hit : Hit();
    viewport()->update();
}

void RecentRowsView::mouseMoveEvent(QMouseEvent *event)
{
    // When the list moves under a resting pointer, what a key chose stays.
    if (m_pointer && std::exchange(m_globalPointer, event->globalPosition()) == event->globalPosition())
        return;
    m_globalPointer = event->globalPosition();
    m_pointer = event->position();
    followPointer();
}

void RecentRowsView::mouseReleaseEvent(QMouseEvent *event)
{
    const Hit pressed = std::exchange(m_pressed, {});
    m_pointer = event->position();
    followPointer();
    if (event->button() != Qt::LeftButton || pressed != m_hit)
        return;
    switch (pressed.part) {
    case Part::None:
        break;
    case Part::Row:
        Q_EMIT opened(pressed.id);
        break;
    case Part::PlayBadge:
        Q_EMIT previewToggled(pressed.id);
        break;
    case Part::Forget:
        Q_EMIT forgotten(pressed.id);
        break;
    }
}

void RecentRowsView::mouseDoubleClickEvent(QMouseEvent *event)
{
    // Two presses: the first one may have forgotten what was there.
    mousePressEvent(event);
}

void RecentRowsView::contextMenuEvent(QContextMenuEvent *event)
{
    // The panel's menu is the list's, too.
    event->ignore();
}

void RecentRowsView::wheelEvent(QWheelEvent *event)
{
    RowListView::wheelEvent(event);
    m_pointer = event->position();
}

void RecentRowsView::keyPressEvent(QKeyEvent *event)
{
    event->ignore();
    const Qt::KeyboardModifiers modifiers = event->modifiers() & ~Qt::KeyboardModifiers(Qt::KeypadModifier);
    if (rowCount() == 0 || modifiers != Qt::NoModifier)
        return;
    if (chooseByKey(event->key())) {
        event->accept();
        return;
    }
    const int row = m_recents.rowOf(m_active);
    if (row < 0)
        return;
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        Q_EMIT opened(m_active);
        break;
    case Qt::Key_Space:
        if (!m_recents.entry(row).isPlayable)
            return;
        // Held down it is one wish.
        if (!event->isAutoRepeat())
            Q_EMIT previewToggled(m_active);
        break;
    case Qt::Key_Delete:
        Q_EMIT forgotten(m_active);
        break;
    default:
        return;
    }
    event->accept();
}

void RecentRowsView::focusInEvent(QFocusEvent *event)
{
    // NOLINTNEXTLINE(bugprone-parent-virtual-call): the item view's own would make the first row the current one
    QAbstractScrollArea::focusInEvent(event);
    const bool isByKey = event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason;
    if (isByKey && m_active.isNull() && rowCount() > 0)
        choose(0);
    else
        refresh();
}

void RecentRowsView::focusOutEvent(QFocusEvent *event)
{
    RowListView::focusOutEvent(event);
    if (!m_isByPointer)
        m_active = {};
    refresh();
}

void RecentRowsView::rowsMoved()
{
    if (m_pointer && m_isByPointer)
        m_hit = hitAt(*m_pointer);
}

void RecentRowsView::scrollContentsBy(int dx, int dy)
{
    RowListView::scrollContentsBy(dx, dy);
    if (m_isByPointer)
        followPointer();
}

void RecentRowsView::paintEvent(QPaintEvent *event)
{
    const auto [first, last] = visibleRows();
    m_recents.setVisibleRows(first, last);
    RowListView::paintEvent(event);
}

} // namespace ostrelle
