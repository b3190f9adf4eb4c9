#include "windows/ToolList.h"

#include "foundation/MakeChild.h"
#include "platform/DragOut.h"
#include "platform/DragText.h"
#include "records/Motion.h"
#include "windows/LiftedRow.h"
#include "windows/ToolRow.h"

#include <QApplication>
#include <QDropEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QMouseEvent>

#include <algorithm>
#include <cmath>

namespace ostrelle {
namespace {

constexpr double kMoveResponse = 0.22;
constexpr double kPixelRest = 0.25;

} // namespace

ToolList::ToolList(const ControlContext &context, DragOut &dragOut, DragText &dragText, QWidget *parent)
    : QWidget(parent)
    , m_context(context)
    , m_dragOut(dragOut)
    , m_dragText(dragText)
{
    setAcceptDrops(true);
}

ToolList::~ToolList()
{
    // It would go on sliding, and tell when it is there.
    delete m_lifted;
}

QList<KestroModule> ToolList::order() const
{
    QList<KestroModule> order;
    for (const Entry &entry : m_entries)
        order.append(entry.row->module());
    return order;
}

/// The list may hold a tool more than once, as a settings file can: rows are told apart by their places.
void ToolList::showOrder(const QList<KestroModule> &order)
{
    if (order == this->order())
        return;
    endDrag();
    for (const Entry &entry : m_entries)
        entry.row->deleteLater();
    m_entries.clear();
    for (const KestroModule module : order) {
        auto &row = makeChild<ToolRow>(this, m_context, module);
        row.showState(m_enabled.contains(module));
        row.installEventFilter(this);
        connect(&row, &ToolRow::switched, this, [this, module](bool isShown) { Q_EMIT switched(module, isShown); });
        row.show();
        m_entries.push_back(
            {&row, std::make_unique<AnimatedNumber>(
                       m_context, static_cast<double>(m_entries.size()) * ToolRow::kHeight,
                       [this, &row] { place(m_entries[static_cast<std::size_t>(indexOf(&row))]); }, kPixelRest)});
        place(m_entries.back());
    }
    setFixedHeight(static_cast<int>(m_entries.size()) * ToolRow::kHeight);
}

void ToolList::showEnabled(const QSet<KestroModule> &enabled)
{
    m_enabled = enabled;
    for (const Entry &entry : m_entries)
        entry.row->showState(enabled.contains(entry.row->module()));
}

int ToolList::indexOf(const QObject *row) const
{
    const auto found =
        std::find_if(m_entries.begin(), m_entries.end(), [row](const Entry &entry) { return entry.row == row; });
    return found == m_entries.end() ? -1 : static_cast<int>(found - m_entries.begin());
}

int ToolList::indexOf(KestroModule module) const
{
    if (m_dragged != nullptr && m_dragged->module() == module)
        return indexOf(m_dragged);
    return static_cast<int>(order().indexOf(module));
}

int ToolList::indexAt(int y) const
{
    return std::clamp(y / ToolRow::kHeight, 0, static_cast<int>(m_entries.size()) - 1);
}

void ToolList::place(const Entry &entry) const
{
    entry.row->setGeometry(0, static_cast<int>(std::lround(entry.y->value())), width(), ToolRow::kHeight);
}

void ToolList::resizeEvent(QResizeEvent *)
{
    for (const Entry &entry : m_entries)
        place(entry);
}

void ToolList::move(int from, int to)
{
    const auto first = m_entries.begin();
    if (from < to)
        std::rotate(first + from, first + from + 1, first + to + 1);
    else
        std::rotate(first + to, first + from, first + from + 1);
    for (std::size_t i = 0; i < m_entries.size(); ++i)
        m_entries[i].y->animateTo(static_cast<double>(i) * ToolRow::kHeight, Motion::damped(kMoveResponse));
    // Tab follows what is seen.
    for (std::size_t i = 0; i + 1 < m_entries.size(); ++i)
        setTabOrder(&m_entries[i].row->control(), &m_entries[i + 1].row->control());
    Q_EMIT reordered(order());
}

void ToolList::keyPressEvent(QKeyEvent *event)
{
    const int step = event->key() == Qt::Key_Up ? -1 : event->key() == Qt::Key_Down ? 1 : 0;
    if (step == 0 || !event->modifiers().testFlag(Qt::AltModifier)) {
        event->ignore();
        return;
    }
    for (int i = 0; i < static_cast<int>(m_entries.size()); ++i) {
        if (!m_entries[static_cast<std::size_t>(i)].row->control().hasFocus())
            continue;
        if (i + step >= 0 && i + step < static_cast<int>(m_entries.size()))
            move(i, i + step);
        return;
    }
}

bool ToolList::eventFilter(QObject *watched, QEvent *event)
{
    if (m_lifted != nullptr && m_dragged != nullptr && !m_isSettling && takeFromWindow(watched, *event))
        return true;
    const int index = indexOf(watched);
    if (index < 0)
        return QWidget::eventFilter(watched, event);
    const auto mouse = [event] { return static_cast<QMouseEvent *>(event); };
    switch (event->type()) {
    case QEvent::MouseButtonPress:
        if (mouse()->button() == Qt::LeftButton)
            press(index, mouse()->position().toPoint());
        return true;
    case QEvent::MouseMove:
        drag(mouse()->position().toPoint() + static_cast<QWidget *>(watched)->pos());
        return true;
    case QEvent::MouseButtonRelease:
        if (mouse()->button() == Qt::LeftButton)
            release();
        return true;
    default:
        return QWidget::eventFilter(watched, event);
    }
}

bool ToolList::takeFromWindow(const QObject *watched, QEvent &event)
{
    switch (event.type()) {
    case QEvent::KeyPress:
    case QEvent::ShortcutOverride:
        // The keys are not those of what has the focus; those of the program's other windows are none of ours.
        if (!isActiveWindow())
            return false;
        if (static_cast<QKeyEvent &>(event).key() == Qt::Key_Escape && event.type() == QEvent::KeyPress)
            cancel();
        return true;
    case QEvent::WindowDeactivate:
        // Nobody may ever tell of the release, as when the workspace changes.
        if (watched == window())
            settle();
        return false;
    default:
        return false;
    }
}

void ToolList::press(int index, const QPoint &position)
{
    endDrag();
    m_dragged = m_entries[static_cast<std::size_t>(index)].row;
    m_grip = position;
    m_pressed = position + m_dragged->pos();
}

void ToolList::lift()
{
    m_startIndex = indexOf(m_dragged);
    m_lifted = &makeChild<LiftedRow>(window(), m_context, m_dragged->picture());
    m_lifted->show();
    m_dragged->setLifted(true);
    qApp->installEventFilter(this);
}

void ToolList::drag(const QPoint &position)
{
    if (m_dragged == nullptr || m_isOut || m_isSettling)
        return;
    if (m_lifted == nullptr) {
        if ((position - m_pressed).manhattanLength() < QApplication::startDragDistance())
            return;
        lift();
    }
    if (!window()->rect().contains(mapTo(window(), position))) {
        takeOut();
        return;
    }
    m_lifted->follow(mapTo(window(), position - m_grip));
    const int target = indexAt(position.y());
    const int index = indexOf(m_dragged);
    if (target != index)
        move(index, target);
}

void ToolList::takeOut()
{
    const TextDrag drag{.text = rawValue(m_dragged->module()), .picture = m_lifted->picture(), .hotSpot = m_grip};
    dropLifted();
    m_isOut = true;
    m_dragOut.startText(*this, drag, [this](DragOut::Outcome) {
        if (m_isOut)
            endDrag();
    });
}

void ToolList::dragEnterEvent(QDragEnterEvent *event)
{
    forgetCarried();
    m_over = event->position().toPoint();
    event->setDropAction(Qt::CopyAction);
    if (event->source() != nullptr) {
        m_carried = moduleFromRawValue(event->mimeData()->text());
        event->setAccepted(m_carried.has_value());
        follow();
        return;
    }
    event->setAccepted(event->mimeData()->hasText());
    if (!event->isAccepted())
        return;
    // Another program's, which may take its time. Accepted for now, or nothing more would be heard of it.
    m_question = std::make_unique<QObject>();
    m_dragText.read(*m_question, [this](const QString &text) {
        m_carried = moduleFromRawValue(text);
        follow();
    });
}

void ToolList::dragMoveEvent(QDragMoveEvent *event)
{
    m_over = event->position().toPoint();
    follow();
    event->setDropAction(Qt::CopyAction);
    event->setAccepted(m_carried.has_value());
}

void ToolList::dragLeaveEvent(QDragLeaveEvent *)
{
    forgetCarried();
}

void ToolList::dropEvent(QDropEvent *event)
{
    event->setDropAction(Qt::CopyAction);
    event->setAccepted(m_carried.has_value());
    forgetCarried();
}

void ToolList::follow()
{
    if (!m_carried)
        return;
    const int from = indexOf(*m_carried);
    const int to = indexAt(m_over.y());
    if (from >= 0 && from != to)
        move(from, to);
}

void ToolList::forgetCarried()
{
    m_question.reset();
    m_carried.reset();
}

void ToolList::release()
{
    if (m_isOut || m_isSettling)
        return;
    if (m_lifted == nullptr)
        m_dragged = nullptr;
    else
        settle();
}

void ToolList::settle()
{
    qApp->removeEventFilter(this);
    m_isSettling = true;
    const QPoint place(0, indexOf(m_dragged) * ToolRow::kHeight);
    m_lifted->settle(mapTo(window(), place), [this] { endDrag(); });
}

void ToolList::cancel()
{
    if (const int index = indexOf(m_dragged); index != m_startIndex)
        move(index, m_startIndex);
    settle();
}

void ToolList::endDrag()
{
    dropLifted();
    m_isOut = false;
    m_isSettling = false;
    if (m_dragged != nullptr)
        m_dragged->setLifted(false);
    m_dragged = nullptr;
}

void ToolList::dropLifted()
{
    qApp->removeEventFilter(this);
    if (m_lifted != nullptr) {
        m_lifted->hide();
        m_lifted->deleteLater();
        m_lifted = nullptr;
    }
}

} // namespace ostrelle
