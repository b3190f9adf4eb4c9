#include "files/ProjectsListView.h"

#include "files/ProjectsListModel.h"
#include "files/RenameField.h"
#include "foundation/MakeChild.h"
#include "notch/NotchAppearance.h"
#include "notch/controls/GlyphButton.h"

#include <QApplication>
#include <QMouseEvent>

#include <utility>

namespace ostrelle {
namespace {

constexpr int kTopPadding = 8;

} // namespace

ProjectsListView::ProjectsListView(const ControlContext &context, ClipboardPort &clipboard, ProjectsListModel &model,
                                   QWidget *parent)
    : RowListView(context, RowListMeasures{.topPadding = kTopPadding}, parent)
    , m_rows(context, [this](const QUuid &id) { return lookOf(id); })
    , m_actions{&makeAction(0, QStringLiteral("Rename")), &makeAction(1, QStringLiteral("Reveal in Finder")),
                &makeAction(2, QStringLiteral("Remove"))}
    , m_field(makeChild<RenameField>(viewport(), context.appearance, clipboard, QStringLiteral("Name")))
    , m_tints(context, [this] { viewport()->update(); })
    , m_actionFades(context,
                    [this] {
                        rowsMoved();
                        viewport()->update();
                    })
    , m_drag(context, *this,
             [this](const QUuid &id, int place, ProjectsService::Step step) { Q_EMIT moved(id, place, step); })
{
    setAccessibleName(QStringLiteral("Projects"));
    setFocusPolicy(Qt::TabFocus);
    setItemDelegate(&m_rows);
    setModel(&model);
    connect(&model, &ProjectsListModel::aboutToFollow, this, &ProjectsListView::beginGlide);
    connect(&model, &ProjectsListModel::followed, this, &ProjectsListView::followModel);
    connect(m_actions[0], &QAbstractButton::clicked, this, [this] { beginRename(m_active); });
    connect(m_actions[1], &QAbstractButton::clicked, this, [this] { Q_EMIT revealed(m_active); });
    connect(m_actions[2], &QAbstractButton::clicked, this, [this] { Q_EMIT removed(m_active); });
    connect(&m_field, &RenameField::committed, this, [this](const QString &name) { Q_EMIT renamed(m_renamed, name); });
    connect(&m_field, &RenameField::ended, this, &ProjectsListView::endRename);
}

ProjectsListView::~ProjectsListView()
{
    // It commits when it loses the focus, also to its own end.
    m_field.disconnect(this);
}

GlyphButton &ProjectsListView::makeAction(int action, const QString &help)
{
    constexpr int kRemove = 2;
    auto &button = makeChild<GlyphButton>(
        viewport(), context(),
        GlyphButton::Content{.symbol = ProjectRowDelegate::kActionSymbols.at(std::size_t(action)).toString(),
                             .help = help,
                             .purpose = action == kRemove ? GlyphButton::Purpose::Destructive
                                                          : GlyphButton::Purpose::Ordinary});
    // It is there for the pointer only; the keyboard has its own ways.
    button.setFocusPolicy(Qt::NoFocus);
    button.setMouseTracking(true);
    button.hide();
    return button;
}

QUuid ProjectsListView::idAt(int row) const
{
    return static_cast<const ProjectsListModel *>(model())->project(row).id;
}

QUuid ProjectsListView::idAt(const QPointF &position) const
{
    const QModelIndex index = indexAt(position.toPoint());
    return index.isValid() ? idAt(index.row()) : QUuid();
}

ProjectRowDelegate::Look ProjectsListView::lookOf(const QUuid &id) const
{
    const bool isUnderPointer = id == rowWithActions();
    return {.tint = m_tints.amount(id),
            .isUnderPointer = isUnderPointer,
            .actions = isUnderPointer ? 0 : m_actionFades.amount(id),
            .isRenamed = id == m_renamed,
            .isDragged = id == m_drag.row()};
}

QUuid ProjectsListView::rowWithActions() const
{
    return m_isByPointer && m_active != m_renamed && !isDragging() ? m_active : QUuid();
}

void ProjectsListView::select(const QUuid &id)
{
    m_active = id;
    m_isByPointer = false;
    refresh();
    scrollTo(currentIndex());
}

/// The row under the pointer is the active one, also when the list has moved under it.
void ProjectsListView::followPointer()
{
    if (isDragging() || !m_pointer)
        return;
    const QUuid id = idAt(m_pointer->local);
    if (id.isNull() && !m_isByPointer)
        return;
    m_active = id;
    m_isByPointer = !id.isNull();
    refresh();
}

void ProjectsListView::followModel()
{
    endGlide();
    if (isDragging() && rowOf(m_drag.row()) < 0)
        m_drag.stop();
    if (!m_renamed.isNull() && rowOf(m_renamed) < 0)
        m_field.cancel();
    if (m_isByPointer)
        followPointer();
    if (activeRow() < 0) {
        m_active = {};
        m_isByPointer = false;
    }
    refresh();
}

void ProjectsListView::refresh()
{
    const QModelIndex index = activeRow() >= 0 ? model()->index(activeRow(), 0) : QModelIndex();
    if (index != currentIndex() || selectionModel()->isSelected(index) != index.isValid())
        selectionModel()->setCurrentIndex(index, index.isValid() ? QItemSelectionModel::ClearAndSelect
                                                                 : QItemSelectionModel::Clear);
    QList<QUuid> tinted{m_active, m_renamed, m_drag.row()};
    tinted.removeAll(QUuid());
    QList<QUuid> acting{rowWithActions()};
    acting.removeAll(QUuid());
    m_tints.show(tinted);
    m_actionFades.show(acting);
    rowsMoved();
    viewport()->update();
}

void ProjectsListView::rowsMoved()
{
    const QUuid acting = rowWithActions();
    const int row = rowOf(acting);
    const QRectF plate = row >= 0 ? plateOf(row) : QRectF();
    for (int action = 0; action < static_cast<int>(m_actions.size()); ++action) {
        GlyphButton &button = *m_actions.at(std::size_t(action));
        if (row >= 0)
            button.move(ProjectRowDelegate::actionRect(plate, action).topLeft().toPoint());
        button.setPresence(m_actionFades.amount(acting) * fadeAt(plate.center().y()));
        button.setVisible(row >= 0);
    }
    const int renamedRow = rowOf(m_renamed);
    if (renamedRow >= 0)
        m_field.place(ProjectRowDelegate::nameRect(plateOf(renamedRow)));
}

void ProjectsListView::scrollContentsBy(int dx, int dy)
{
    RowListView::scrollContentsBy(dx, dy);
    if (m_isByPointer)
        followPointer();
}

double ProjectsListView::offsetOf(const QUuid &id) const
{
    return isDragging() && id == m_drag.row() ? m_drag.offset() : RowListView::offsetOf(id);
}

void ProjectsListView::beginRename(const QUuid &id)
{
    const int row = rowOf(id);
    if (row < 0 || id == m_renamed)
        return;
    finish();
    m_renamed = id;
    m_active = id;
    m_isByPointer = false;
    const QRectF plate = plateOf(row);
    if (plate.top() < 0 || fadeAt(plate.bottom()) < 1)
        scrollTo(model()->index(row, 0));
    refresh();
    m_field.begin(model()->index(row, 0).data().toString());
}

void ProjectsListView::endRename()
{
    m_renamed = {};
    if (m_field.hasFocus())
        setFocus(Qt::OtherFocusReason);
    refresh();
}

void ProjectsListView::cancelDrag()
{
    m_press.reset();
    glideThrough([this] { m_drag.cancel(); });
    followPointer();
    refresh();
}

void ProjectsListView::finish()
{
    m_press.reset();
    m_field.commit();
    if (!isDragging())
        return;
    glideThrough([this] { m_drag.stop(); });
    followPointer();
    refresh();
}

bool ProjectsListView::viewportEvent(QEvent *event)
{
    if (event->type() == QEvent::Leave) {
        m_pointer.reset();
        if (m_isByPointer) {
            m_active = {};
            m_isByPointer = false;
            refresh();
        }
    }
    return RowListView::viewportEvent(event);
}

void ProjectsListView::mousePressEvent(QMouseEvent *event)
{
    m_press.reset();
    const bool endsRename = m_field.isRenaming();
    setFocus(Qt::MouseFocusReason);
    // A press elsewhere while a name is changed only takes the name.
    const QUuid id = idAt(event->position());
    m_pointer = {event->position(), event->globalPosition()};
    followPointer();
    if (event->button() == Qt::LeftButton && !endsRename && !id.isNull())
        m_press = {.row = id, .place = *m_pointer};
}

void ProjectsListView::mouseMoveEvent(QMouseEvent *event)
{
    // When the list moves under a resting pointer, what a key chose stays.
    if (m_pointer && m_pointer->global == event->globalPosition())
        return;
    m_pointer = {event->position(), event->globalPosition()};
    if (event->buttons() == Qt::NoButton) {
        followPointer();
        return;
    }
    if (m_press && !isDragging() && rowOf(m_press->row) >= 0 &&
        (event->globalPosition() - m_press->place.global).manhattanLength() >= QApplication::startDragDistance()) {
        m_active = m_press->row;
        m_drag.start(m_press->row, m_press->place.local.y());
        refresh();
    }
    if (isDragging()) {
        m_drag.follow(event->position().y());
        rowsMoved();
        viewport()->update();
    }
}

void ProjectsListView::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    const std::optional<Press> press = std::exchange(m_press, std::nullopt);
    if (isDragging()) {
        m_isByPointer = true;
        finish();
    } else if (press && rowOf(press->row) >= 0) {
        Q_EMIT clicked(press->row);
    }
}

void ProjectsListView::mouseDoubleClickEvent(QMouseEvent *event)
{
    // The first click has done it.
    event->accept();
}

void ProjectsListView::wheelEvent(QWheelEvent *event)
{
    RowListView::wheelEvent(event);
    // Some devices report a motion to the same place with every step of the wheel.
    m_pointer = {event->position(), event->globalPosition()};
    if (isDragging())
        m_drag.follow(event->position().y());
}

void ProjectsListView::contextMenuEvent(QContextMenuEvent *event)
{
    const QUuid id = idAt(QPointF(event->pos()));
    if (!id.isNull() && !isDragging())
        Q_EMIT menuRequested(id, event->pos());
}

void ProjectsListView::keyPressEvent(QKeyEvent *event)
{
    // The tool has them; a list of the toolkit would search for what is typed.
    event->ignore();
}

void ProjectsListView::focusInEvent(QFocusEvent *event)
{
    RowListView::focusInEvent(event);
    const bool isByKey = event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason;
    if (isByKey && m_active.isNull() && rowCount() > 0)
        select(idAt(0));
    else
        refresh();
}

} // namespace ostrelle
