#include "notch/controls/RowListView.h"

#include "notch/NotchAppearance.h"
#include "notch/controls/EdgeFade.h"
#include "records/Motion.h"

#include <QPainter>
#include <QScrollBar>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace ostrelle {
namespace {

constexpr int kPitch = RowPlate::kPitch;
constexpr int kBottomPadding = 8;
constexpr double kListResponse = 0.22;
constexpr double kWheelStep = 1.5 * kPitch;

} // namespace

RowListView::RowListView(const ControlContext &context, int topPadding, QWidget *parent)
    : QListView(parent)
    , m_context(context)
    , m_topPadding(topPadding)
    , m_scroll(context, *verticalScrollBar(), kWheelStep)
    , m_glide(context, 0, [this] {
        rowsMoved();
        viewport()->update();
    })
{
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
    connect(&context.appearance, &NotchAppearance::changed, viewport(), qOverload<>(&QWidget::update));
}

int RowListView::rowsPerPage() const
{
    return std::max(1, viewport()->height() / kPitch);
}

int RowListView::rowCount() const
{
    return model() != nullptr ? model()->rowCount() : 0;
}

int RowListView::rowOf(const QUuid &id) const
{
    for (int row = 0; row < rowCount(); ++row) {
        if (idAt(row) == id)
            return row;
    }
    return -1;
}

double RowListView::placeOf(int row) const
{
    return m_topPadding + row * kPitch - verticalOffset();
}

QRectF RowListView::rowRect(int row) const
{
    return {0, placeOf(row) + offsetOf(idAt(row)), double(viewport()->width()), kPitch};
}

QModelIndex RowListView::indexAt(const QPoint &position) const
{
    const int y = position.y() + verticalOffset() - m_topPadding;
    const bool isInside = y >= 0 && y < rowCount() * kPitch && viewport()->rect().contains(position);
    return isInside ? model()->index(y / kPitch, 0) : QModelIndex();
}

QRect RowListView::visualRect(const QModelIndex &index) const
{
    return index.isValid() ? rowRect(index.row()).toRect() : QRect();
}

double RowListView::offsetOf(const QUuid &id) const
{
    return m_offsets.isEmpty() ? 0 : m_offsets.value(id) * m_glide.value();
}

void RowListView::rowsMoved()
{
}

void RowListView::scrollTo(const QModelIndex &index, ScrollHint)
{
    if (!index.isValid())
        return;
    executeDelayedItemsLayout();
    const double middle = m_topPadding + index.row() * kPitch + RowPlate::kHeight / 2.0;
    m_scroll.moveTo(std::round(middle - viewport()->height() / 2.0));
}

void RowListView::glideThrough(const std::function<void()> &change)
{
    beginGlide();
    change();
    endGlide();
}

void RowListView::beginGlide()
{
    m_before.clear();
    for (int row = 0; row < rowCount(); ++row)
        m_before.insert(idAt(row), rowRect(row).y());
}

void RowListView::endGlide()
{
    executeDelayedItemsLayout();
    m_offsets.clear();
    m_new.clear();
    m_glide.jumpTo(1);
    for (int row = 0; row < rowCount(); ++row) {
        const QUuid id = idAt(row);
        const auto before = m_before.constFind(id);
        if (before == m_before.constEnd())
            m_new.insert(id);
        else if (*before != placeOf(row) && !m_context.appearance.reducesMotion())
            m_offsets.insert(id, *before - placeOf(row));
    }
    m_glide.animateTo(0, Motion::damped(kListResponse));
    rowsMoved();
    viewport()->update();
}

double RowListView::fadeAt(double y) const
{
    const int below = verticalScrollBar()->maximum() - verticalScrollBar()->value();
    const double fade = std::min(kFade, static_cast<double>(below));
    return fade > 0 ? std::clamp((viewport()->height() - y) / fade, 0.0, 1.0) : 1;
}

std::pair<int, int> RowListView::visibleRows() const
{
    // While rows glide, some of the next pages still reach into the view.
    const int reach = m_glide.isMoving() ? rowsPerPage() : 0;
    const int top = verticalOffset() - m_topPadding;
    const int first = std::max(top / kPitch - reach, 0);
    const int last = std::min((top + viewport()->height()) / kPitch + reach, rowCount() - 1);
    return {first, last};
}

void RowListView::paintRow(QPainter &painter, int row)
{
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    const QModelIndex index = model()->index(row, 0);
    const QRectF rect = rowRect(row);
    option.rect = QRect(0, 0, viewport()->width(), kPitch);
    option.state.setFlag(QStyle::State_Selected, index == currentIndex());
    painter.save();
    if (m_new.contains(idAt(row)))
        painter.setOpacity(1 - m_glide.value());
    painter.translate(0, rect.y());
    itemDelegate()->paint(&painter, option, index);
    painter.restore();
}

void RowListView::paintEvent(QPaintEvent *)
{
    executeDelayedItemsLayout();
    const auto [first, last] = visibleRows();
    const int topmost = topmostRow();
    const auto paintRows = [&, first = first, last = last](QPainter &onto) {
        for (int row = first; row <= last; ++row) {
            if (row != topmost)
                paintRow(onto, row);
        }
        if (topmost >= 0)
            paintRow(onto, topmost);
    };
    QPainter painter(viewport());
    const double below = verticalScrollBar()->maximum() - verticalScrollBar()->value();
    const EdgeFade fade{.bottom = std::clamp(below, 0.0, std::min(kFade, viewport()->height() / 2.0))};
    paintEdgeFaded(painter, QRectF(viewport()->rect()), fade, paintRows);
}

void RowListView::resizeEvent(QResizeEvent *event)
{
    QListView::resizeEvent(event);
    rowsMoved();
}

void RowListView::scrollContentsBy(int dx, int dy)
{
    QListView::scrollContentsBy(dx, dy);
    // That moved the widgets on the rows as well.
    rowsMoved();
    viewport()->update();
}

void RowListView::updateGeometries()
{
    QListView::updateGeometries();
    const int content = m_topPadding + rowCount() * kPitch - (kPitch - RowPlate::kHeight) + kBottomPadding;
    verticalScrollBar()->setRange(0, std::max(content - viewport()->height(), 0));
    m_scroll.clamp();
    rowsMoved();
}

void RowListView::wheelEvent(QWheelEvent *event)
{
    m_scroll.turnWheel(*event);
    event->accept();
}

} // namespace ostrelle
