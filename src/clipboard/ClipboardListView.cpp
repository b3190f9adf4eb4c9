#include "clipboard/ClipboardListView.h"

#include "clipboard/ClipboardProxyModel.h"
#include "clipboard/ClipboardRow.h"
#include "clipboard/ClipboardRowPictures.h"
#include "foundation/MakeChild.h"
#include "notch/NotchAppearance.h"
#include "notch/controls/EdgeFade.h"
#include "notch/controls/GlyphButton.h"
#include "records/Motion.h"

#include <QApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>

#include <algorithm>
#include <cmath>
#include <utility>

namespace ostrelle {
namespace {

constexpr int kPitch = ClipboardRowDelegate::kPitch;
constexpr int kRowHeight = ClipboardRowDelegate::kRowHeight;
constexpr int kBottomPadding = 8;
constexpr double kFade = 22;
constexpr double kListResponse = 0.22;
constexpr double kButtonsResponse = 0.16;
constexpr double kWheelResponse = 0.16;
constexpr double kWheelStep = 1.5 * kPitch;
constexpr double kNotch = 120; ///< eighths of a degree in one step of a wheel
constexpr double kPixelRest = 0.25;

} // namespace

ClipboardListView::ClipboardListView(const ControlContext &context, ClipboardProxyModel &results,
                                     ClipboardRowPictures &pictures, const FileIcons &icons, QWidget *parent)
    : QListView(parent)
    , m_context(context)
    , m_results(results)
    , m_pictures(pictures)
    , m_rows(context, icons, pictures)
    , m_pin(makeChild<GlyphButton>(
          viewport(), context, GlyphButton::Content{.symbol = QStringLiteral("pin"), .help = QStringLiteral("Pin")}))
    , m_delete(makeChild<GlyphButton>(
          viewport(), context,
          GlyphButton::Content{.symbol = QStringLiteral("trash"), .help = QStringLiteral("Delete")}))
    , m_handover(context, 1,
                 [this] {
                     placeButtons();
                     viewport()->update();
                 })
    , m_scroll(
          context, 0, [this] { showScroll(); }, kPixelRest)
    , m_glide(context, 0, [this] {
        placeButtons();
        viewport()->update();
    })
{
    setAccessibleName(QStringLiteral("Clipboard history"));
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(ScrollPerPixel);
    setUniformItemSizes(true);
    setEditTriggers(NoEditTriggers);
    setAutoScroll(false);
    setMouseTracking(true);
    viewport()->setMouseTracking(true);
    viewport()->setAutoFillBackground(false);
    setItemDelegate(&m_rows);
    setModel(&results);

    connect(&results, &QAbstractItemModel::rowsInserted, this, &ClipboardListView::followResults);
    connect(&results, &QAbstractItemModel::rowsRemoved, this, &ClipboardListView::followResults);
    connect(&results, &QAbstractItemModel::layoutChanged, this, &ClipboardListView::followResults);
    connect(&results, &QAbstractItemModel::modelReset, this, &ClipboardListView::followResults);
    connect(&results, &QAbstractItemModel::dataChanged, this, &ClipboardListView::followResults);
    connect(&pictures, &ClipboardRowPictures::arrived, viewport(), qOverload<>(&QWidget::update));
    connect(&context.appearance, &NotchAppearance::changed, viewport(), qOverload<>(&QWidget::update));
    connect(&m_pin, &QAbstractButton::clicked, this, [this] { Q_EMIT pinToggled(m_selected); });
    connect(&m_delete, &QAbstractButton::clicked, this, [this] { Q_EMIT deleted(m_selected); });
    connect(verticalScrollBar(), &QScrollBar::valueChanged, this, [this](int value) {
        if (!m_isShowingScroll)
            m_scroll.jumpTo(value);
    });
    placeButtons();
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
    if (arrival == Arrival::AtOnce) {
        m_scroll.jumpTo(m_scroll.target());
        showScroll();
    }
}

void ClipboardListView::followResults()
{
    const QModelIndex index = m_results.indexOf(m_selected);
    if (index != currentIndex() || selectionModel()->isSelected(index) != index.isValid())
        selectionModel()->setCurrentIndex(index, index.isValid() ? QItemSelectionModel::ClearAndSelect
                                                                 : QItemSelectionModel::Clear);
    placeButtons();
    viewport()->update();
}

int ClipboardListView::rowsPerPage() const
{
    return std::max(1, viewport()->height() / kPitch);
}

QRectF ClipboardListView::plateOf(int row) const
{
    const double y = row * kPitch - verticalOffset() + offsetOf(m_results.idAt(row));
    return ClipboardRowDelegate::plateRect(QRectF(0, y, viewport()->width(), kPitch));
}

double ClipboardListView::offsetOf(const QUuid &id) const
{
    return m_offsets.isEmpty() ? 0 : m_offsets.value(id) * m_glide.value();
}

void ClipboardListView::scrollTo(const QModelIndex &index, ScrollHint)
{
    if (!index.isValid())
        return;
    executeDelayedItemsLayout();
    const double middle = index.row() * kPitch + kRowHeight / 2.0;
    const double target = std::clamp(std::round(middle - viewport()->height() / 2.0), 0.0,
                                     static_cast<double>(verticalScrollBar()->maximum()));
    m_scroll.animateTo(target, Motion::damped(kListResponse));
}

void ClipboardListView::settleScroll()
{
    executeDelayedItemsLayout();
    if (currentIndex().isValid())
        scrollTo(currentIndex());
    else
        m_scroll.animateTo(0, Motion::damped(kListResponse));
    m_scroll.jumpTo(m_scroll.target());
    showScroll();
}

void ClipboardListView::scrollBy(double distance)
{
    const double maximum = verticalScrollBar()->maximum();
    m_scroll.animateTo(std::clamp(m_scroll.target() + distance, 0.0, maximum), Motion::damped(kWheelResponse));
}

void ClipboardListView::showScroll()
{
    m_isShowingScroll = true;
    verticalScrollBar()->setValue(static_cast<int>(std::lround(m_scroll.value())));
    m_isShowingScroll = false;
}

void ClipboardListView::glideThrough(const std::function<void()> &change)
{
    QHash<QUuid, double> before;
    for (int row = 0; row < m_results.rowCount(); ++row)
        before.insert(m_results.idAt(row), plateOf(row).y());
    change();
    executeDelayedItemsLayout();
    m_offsets.clear();
    if (m_context.appearance.reducesMotion())
        return;
    m_glide.jumpTo(1);
    for (int row = 0; row < m_results.rowCount(); ++row) {
        const QUuid id = m_results.idAt(row);
        const double distance = before.contains(id) ? before.value(id) - (row * kPitch - verticalOffset()) : 0;
        if (distance != 0)
            m_offsets.insert(id, distance);
    }
    placeButtons();
    m_glide.animateTo(0, Motion::damped(kListResponse));
}

void ClipboardListView::placeButtons()
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
    m_pin.move(ClipboardRowDelegate::buttonRect(plate, 1).topLeft().toPoint());
    m_delete.move(ClipboardRowDelegate::buttonRect(plate, 0).topLeft().toPoint());
    // In the fade at the end of the list the buttons fade as a whole.
    const int below = verticalScrollBar()->maximum() - verticalScrollBar()->value();
    const double fade = std::min(kFade, static_cast<double>(below));
    const double depth = viewport()->height() - plate.center().y();
    const double presence = fade > 0 ? std::clamp(depth / fade, 0.0, 1.0) : 1;
    m_pin.setPresence(presence * m_handover.value());
    m_delete.setPresence(presence * m_handover.value());
}

void ClipboardListView::paintRows(QPainter &painter, int first, int last)
{
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    for (int row = first; row <= last; ++row) {
        const QModelIndex index = m_results.index(row, 0);
        const double y = row * kPitch - verticalOffset() + offsetOf(m_results.idAt(row));
        option.rect = QRect(0, 0, viewport()->width(), kPitch);
        option.state.setFlag(QStyle::State_Selected, index == currentIndex());
        painter.save();
        painter.translate(0, y);
        m_rows.paint(&painter, option, index);
        painter.restore();
    }
}

void ClipboardListView::paintEvent(QPaintEvent *)
{
    executeDelayedItemsLayout();
    const int last = m_results.rowCount() - 1;
    // While rows glide, some of the next pages still reach into the view.
    const int reach = m_glide.isMoving() ? rowsPerPage() : 0;
    const int top = std::max(verticalOffset() / kPitch - reach, 0);
    const int bottom = std::min((verticalOffset() + viewport()->height()) / kPitch + reach, last);

    QList<QUuid> pictured;
    for (int row = top; row <= bottom; ++row) {
        const ClipboardRow shown = m_results.row(row);
        if (shown.kind == ClipItem::Kind::Image)
            pictured.append(shown.id);
    }
    m_pictures.want(pictured, devicePixelRatioF());

    QPainter painter(viewport());
    const double below = verticalScrollBar()->maximum() - verticalScrollBar()->value();
    const EdgeFade fade{.bottom = std::clamp(below, 0.0, std::min(kFade, viewport()->height() / 2.0))};
    paintEdgeFaded(painter, QRectF(viewport()->rect()), fade, [&](QPainter &onto) { paintRows(onto, top, bottom); });
}

void ClipboardListView::resizeEvent(QResizeEvent *event)
{
    QListView::resizeEvent(event);
    placeButtons();
}

void ClipboardListView::scrollContentsBy(int dx, int dy)
{
    QListView::scrollContentsBy(dx, dy);
    // That moved the buttons as well.
    placeButtons();
    viewport()->update();
}

void ClipboardListView::updateGeometries()
{
    QListView::updateGeometries();
    const int content = m_results.rowCount() * kPitch - (kPitch - kRowHeight) + kBottomPadding;
    verticalScrollBar()->setRange(0, std::max(content - viewport()->height(), 0));
    if (m_scroll.target() > verticalScrollBar()->maximum()) {
        m_scroll.jumpTo(verticalScrollBar()->maximum());
        showScroll();
    }
    placeButtons();
}

bool ClipboardListView::viewportEvent(QEvent *event)
{
    // A pointer that comes back has moved, also when it enters where it was last.
    if (event->type() == QEvent::Leave)
        m_pointer.reset();
    return QListView::viewportEvent(event);
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
    const int pixels = event->pixelDelta().y();
    const int angle = event->angleDelta().y();
    if (pixels != 0 || std::abs(angle) < kNotch) {
        scrollBy(-(pixels != 0 ? pixels : angle * kWheelStep / kNotch));
        m_scroll.jumpTo(m_scroll.target());
        showScroll();
    } else {
        scrollBy(-angle * kWheelStep / kNotch);
    }
    event->accept();
}

void ClipboardListView::contextMenuEvent(QContextMenuEvent *event)
{
    const QModelIndex index = indexAt(event->pos());
    if (index.isValid())
        Q_EMIT menuRequested(m_results.idAt(index.row()), event->pos());
}

} // namespace ostrelle
