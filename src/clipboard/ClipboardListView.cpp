#include "clipboard/ClipboardListView.h"

#include "clipboard/ClipboardProxyModel.h"
#include "clipboard/ClipboardRow.h"
#include "clipboard/ClipboardRowPictures.h"
#include "foundation/MakeChild.h"
#include "notch/controls/GlyphButton.h"
#include "platform/FileIcons.h"
#include "records/Motion.h"

#include <QApplication>
#include <QMouseEvent>

#include <utility>

namespace ostrelle {
namespace {

constexpr double kButtonsResponse = 0.16;

} // namespace

ClipboardListView::ClipboardListView(const ControlContext &context, ClipboardProxyModel &results,
                                     ClipboardRowPictures &pictures, FileIcons &icons, QWidget *parent)
    : RowListView(context, 0, parent)
    , m_results(results)
    , m_pictures(pictures)
    , m_rows(context, icons, pictures)
    , m_pin(makeChild<GlyphButton>(
          viewport(), context, GlyphButton::Content{.symbol = QStringLiteral("pin"), .help = QStringLiteral("Pin")}))
    , m_delete(makeChild<GlyphButton>(
          viewport(), context,
          GlyphButton::Content{.symbol = QStringLiteral("trash"), .help = QStringLiteral("Delete")}))
    , m_handover(context, 1, [this] {
        rowsMoved();
        viewport()->update();
    })
{
    setAccessibleName(QStringLiteral("Clipboard history"));
    setItemDelegate(&m_rows);
    setModel(&results);

    connect(&results, &QAbstractItemModel::rowsInserted, this, &ClipboardListView::followResults);
    connect(&results, &QAbstractItemModel::rowsRemoved, this, &ClipboardListView::followResults);
    connect(&results, &QAbstractItemModel::layoutChanged, this, &ClipboardListView::followResults);
    connect(&results, &QAbstractItemModel::modelReset, this, &ClipboardListView::followResults);
    connect(&results, &QAbstractItemModel::dataChanged, this, &ClipboardListView::followResults);
    connect(&pictures, &ClipboardRowPictures::arrived, viewport(), qOverload<>(&QWidget::update));
    connect(&icons, &FileIcons::changed, viewport(), qOverload<>(&QWidget::update));
    connect(&m_pin, &QAbstractButton::clicked, this, [this] { Q_EMIT pinToggled(m_selected); });
    connect(&m_delete, &QAbstractButton::clicked, this, [this] { Q_EMIT deleted(m_selected); });
    rowsMoved();
}

ClipboardListView::~ClipboardListView() = default;

void ClipboardListView::select(const QUuid &id, Arrival arrival)
{
    if (id != m_selected) {
        m_leaving = std::exchange(m_selected, id);
        m_handover.jumpTo(arrival == Arrival::Moving ? 0 : 1);
        m_handover.animateTo(1, Motion::damped(kButtonsResponse));
    }
    followResults();
    if (!currentIndex().isValid())
        return;
    scrollTo(currentIndex());
    if (arrival == Arrival::AtOnce)
        scroll().settle();
}

void ClipboardListView::followResults()
{
    const QModelIndex index = m_results.indexOf(m_selected);
    if (index != currentIndex() || selectionModel()->isSelected(index) != index.isValid())
        selectionModel()->setCurrentIndex(index, index.isValid() ? QItemSelectionModel::ClearAndSelect
                                                                 : QItemSelectionModel::Clear);
    rowsMoved();
    viewport()->update();
}

QUuid ClipboardListView::idAt(int row) const
{
    return m_results.idAt(row);
}

void ClipboardListView::settleSearch()
{
    executeDelayedItemsLayout();
    if (currentIndex().isValid())
        scrollTo(currentIndex());
    else
        scroll().moveTo(0);
    scroll().settle();
}

void ClipboardListView::rowsMoved()
{
    const QModelIndex index = currentIndex();
    m_pin.setVisible(index.isValid());
    m_delete.setVisible(index.isValid());
    m_rows.setHandover({.leaving = m_leaving, .progress = m_handover.value()});
    if (!index.isValid())
        return;
    const bool isPinned = m_results.row(index.row()).pinned;
    m_pin.setSymbol(isPinned ? QStringLiteral("pin.slash") : QStringLiteral("pin"));
    m_pin.setHelp(isPinned ? QStringLiteral("Unpin") : QStringLiteral("Pin"));
    const QRectF plate = plateOf(index.row());
    m_pin.move(RowPlate::buttonRect(plate, 1).topLeft().toPoint());
    m_delete.move(RowPlate::buttonRect(plate, 0).topLeft().toPoint());
    // In the fade at the end of the list the buttons fade as a whole.
    const double presence = fadeAt(plate.center().y());
    m_pin.setPresence(presence * m_handover.value());
    m_delete.setPresence(presence * m_handover.value());
}

void ClipboardListView::paintEvent(QPaintEvent *event)
{
    executeDelayedItemsLayout();
    const auto [first, last] = visibleRows();
    QList<QUuid> pictured;
    for (int row = first; row <= last; ++row) {
        const ClipboardRow shown = m_results.row(row);
        if (shown.kind == ClipItem::Kind::Image)
            pictured.append(shown.id);
    }
    m_pictures.want(pictured, devicePixelRatioF());
    RowListView::paintEvent(event);
}

bool ClipboardListView::viewportEvent(QEvent *event)
{
    // A pointer that comes back has moved, also when it enters where it was last.
    if (event->type() == QEvent::Leave)
        m_pointer.reset();
    return RowListView::viewportEvent(event);
}

void ClipboardListView::mouseMoveEvent(QMouseEvent *event)
{
    const QPointF position = event->globalPosition();
    if (m_pointer == position)
        return;
    m_pointer = position;
    if (event->buttons() != Qt::NoButton)
        return;
    const QModelIndex index = indexAt(event->position().toPoint());
    if (index.isValid() && m_results.idAt(index.row()) != m_selected)
        select(m_results.idAt(index.row()));
}

void ClipboardListView::mousePressEvent(QMouseEvent *event)
{
    const QModelIndex index = indexAt(event->position().toPoint());
    m_pressed = event->button() == Qt::LeftButton && index.isValid() ? m_results.idAt(index.row()) : QUuid();
    m_pressPosition = event->globalPosition();
}

void ClipboardListView::mouseReleaseEvent(QMouseEvent *event)
{
    const QUuid pressed = std::exchange(m_pressed, QUuid());
    if (event->button() != Qt::LeftButton || !m_results.indexOf(pressed).isValid())
        return;
    // The list may have moved under a resting pointer meanwhile: then what was pressed counts.
    const QPointF distance = event->globalPosition() - m_pressPosition;
    const QModelIndex index = indexAt(event->position().toPoint());
    const bool isSameRow = index.isValid() && m_results.idAt(index.row()) == pressed;
    if (isSameRow || distance.manhattanLength() < QApplication::startDragDistance())
        Q_EMIT used(pressed);
}

void ClipboardListView::mouseDoubleClickEvent(QMouseEvent *event)
{
    mousePressEvent(event);
}

void ClipboardListView::wheelEvent(QWheelEvent *event)
{
    // Some devices report a motion to the same place with every step of the wheel.
    m_pointer = event->globalPosition();
    RowListView::wheelEvent(event);
}

void ClipboardListView::contextMenuEvent(QContextMenuEvent *event)
{
    const QModelIndex index = indexAt(event->pos());
    if (index.isValid())
        Q_EMIT menuRequested(m_results.idAt(index.row()), event->pos());
}

} // namespace ostrelle
