#include "clipboard/ClipboardModuleView.h"

#include "clipboard/ClipboardRow.h"
#include "clipboard/ClipboardService.h"
#include "foundation/MakeChild.h"
#include "foundation/TaskScheduler.h"
#include "notch/controls/EmptyStateView.h"
#include "notch/controls/GlyphButton.h"
#include "notch/controls/InlineSearchField.h"
#include "notch/controls/ItemCount.h"
#include "notch/controls/NotchMenu.h"
#include "platform/Haptics.h"
#include "platform/Popups.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QLineEdit>

#include <algorithm>
#include <chrono>
#include <functional>
#include <utility>

namespace ostrelle {
namespace {

constexpr int kSearchMargin = 12;
constexpr int kSearchTop = 9;
constexpr int kSearchBottom = 7;
/// Header, tool strip and search field.
constexpr double kAboveList = 146;
constexpr double kTallestList = 256;
constexpr double kListPadding = 8;
constexpr double kEmptyHeight = 246;
constexpr std::chrono::minutes kAgeing{1};

EmptyStateView::Content noMatches()
{
    return {.symbol = QStringLiteral("magnifyingglass"), .message = QStringLiteral("Nothing matches"), .hint = {}};
}

EmptyStateView::Content noItems()
{
    return {.symbol = QStringLiteral("list.clipboard"),
            .message = QStringLiteral("No copied items yet"),
            .hint = QStringLiteral("Anything you copy shows up here")};
}

} // namespace

ClipboardModuleView::ClipboardModuleView(ClipboardService &service, ClipImages &images, Haptics &haptics,
                                         FileIcons &icons, ClipboardPort &pasteboard, Popups &popups,
                                         TaskScheduler &scheduler, const ControlContext &context, QWidget *parent)
    : ToolView(parent)
    , m_service(service)
    , m_haptics(haptics)
    , m_popups(popups)
    , m_scheduler(scheduler)
    , m_context(context)
    , m_history(service)
    , m_results(m_history)
    , m_pictures(service, images)
    , m_search(makeChild<InlineSearchField>(this, context, pasteboard, QStringLiteral("Search history")))
    , m_list(makeChild<ClipboardListView>(this, context, m_results, m_pictures, icons))
    , m_empty(makeChild<EmptyStateView>(this, context, noItems()))
    , m_count(makeChild<ItemCount>(this, context))
    , m_clear(makeChild<GlyphButton>(
          this, context,
          GlyphButton::Content{.symbol = QStringLiteral("trash"), .help = QStringLiteral("Clear history")}))
{
    // Its own menu would open without the panel's knowledge; the shortcuts do the same.
    m_search.field().setContextMenuPolicy(Qt::PreventContextMenu);
    m_empty.hide();
    m_count.hide();
    m_clear.hide();
    for (QObject *focusable : {static_cast<QObject *>(&m_search.field()), static_cast<QObject *>(&m_list.pinButton()),
                               static_cast<QObject *>(&m_list.deleteButton()), static_cast<QObject *>(&m_clear)})
        focusable->installEventFilter(this);

    connect(&m_search, &InlineSearchField::textChanged, this, [this](const QString &text) {
        m_results.setQuery(text);
        m_list.settleSearch();
    });
    connect(&m_list, &ClipboardListView::used, this, &ClipboardModuleView::use);
    connect(&m_list, &ClipboardListView::pinToggled, this, &ClipboardModuleView::togglePin);
    connect(&m_list, &ClipboardListView::deleted, this, &ClipboardModuleView::remove);
    connect(&m_list, &ClipboardListView::menuRequested, this, &ClipboardModuleView::openMenu);
    connect(&m_clear, &QAbstractButton::clicked, &service, &ClipboardService::clearUnpinned);
    for (const auto changed : {&QAbstractItemModel::rowsInserted, &QAbstractItemModel::rowsRemoved}) {
        connect(&m_results, changed, this, &ClipboardModuleView::followResults);
        connect(&m_history, changed, this, &ClipboardModuleView::followHistory);
    }
    connect(&m_results, &QAbstractItemModel::modelReset, this, &ClipboardModuleView::followResults);
    connect(&m_results, &ClipboardProxyModel::searched, this, &ClipboardModuleView::followResults);
    connect(&m_history, &QAbstractItemModel::modelReset, this, &ClipboardModuleView::followHistory);
    followHistory();
}

ClipboardModuleView::~ClipboardModuleView() = default;

std::optional<double> ClipboardModuleView::wantedBodyHeight() const
{
    const int count = m_results.rowCount();
    if (count == 0)
        return kEmptyHeight;
    return std::min(count * double(RowPlate::kPitch) + kListPadding, kTallestList) + kAboveList;
}

QList<QWidget *> ClipboardModuleView::headerActions()
{
    if (m_history.rowCount() == 0)
        return {};
    return {&m_count, &m_clear};
}

void ClipboardModuleView::appeared()
{
    m_service.whenLoaded(this, [this] {
        m_list.select(m_results.rowCount() > 0 ? m_results.idAt(0) : QUuid(), ClipboardListView::Arrival::AtOnce);
    });
    m_search.field().setFocus(Qt::OtherFocusReason);
}

void ClipboardModuleView::undo()
{
    if (m_service.canUndo())
        m_service.undo();
}

void ClipboardModuleView::use(const QUuid &id)
{
    m_service.copy(id);
    m_haptics.tick();
    Q_EMIT dismissRequested();
}

void ClipboardModuleView::remove(const QUuid &id)
{
    const bool wasSelected = id == m_list.selectedId();
    m_list.glideThrough([&] { m_service.remove(id); });
    if (wasSelected)
        m_list.select(m_results.rowCount() > 0 ? m_results.idAt(0) : QUuid());
}

void ClipboardModuleView::togglePin(const QUuid &id)
{
    m_list.glideThrough([&] { m_service.togglePin(id); });
}

void ClipboardModuleView::moveSelection(int step)
{
    const int count = m_results.rowCount();
    if (count == 0)
        return;
    const int from = std::max(m_list.selectedRow(), 0);
    m_list.select(m_results.idAt(std::clamp(from + step, 0, count - 1)));
}

bool ClipboardModuleView::handlePlainKey(int key)
{
    const bool hasCurrent = m_list.selectedRow() >= 0;
    switch (key) {
    case Qt::Key_Up:
        moveSelection(-1);
        return true;
    case Qt::Key_Down:
        moveSelection(1);
        return true;
    case Qt::Key_PageUp:
        moveSelection(-m_list.rowsPerPage());
        return true;
    case Qt::Key_PageDown:
        moveSelection(m_list.rowsPerPage());
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (hasCurrent)
            use(m_list.selectedId());
        return true;
    case Qt::Key_Delete:
        if (hasCurrent)
            remove(m_list.selectedId());
        return true;
    default:
        return false;
    }
}

bool ClipboardModuleView::handleUndo(const QObject *focused)
{
    if (focused == &m_search.field() && m_search.field().isUndoAvailable())
        return false;
    undo();
    return true;
}

bool ClipboardModuleView::handleKey(const QObject *focused, const QKeyEvent &event)
{
    if (event.matches(QKeySequence::Undo))
        return handleUndo(focused);
    const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeyboardModifiers(Qt::KeypadModifier);
    if (modifiers == Qt::ControlModifier && (event.key() == Qt::Key_Home || event.key() == Qt::Key_End)) {
        const int count = m_results.rowCount();
        moveSelection(event.key() == Qt::Key_Home ? -count : count);
        return true;
    }
    return modifiers == Qt::NoModifier && handlePlainKey(event.key());
}

bool ClipboardModuleView::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress) {
        const auto &key = *static_cast<QKeyEvent *>(event);
        // A focused button is what Return presses.
        const bool isForButton =
            watched != &m_search.field() && (key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter);
        if (!isForButton && handleKey(watched, key))
            return true;
    } else if (event->type() == QEvent::ContextMenu && m_list.selectedRow() >= 0 &&
               static_cast<QContextMenuEvent *>(event)->reason() == QContextMenuEvent::Keyboard) {
        openMenu(m_list.selectedId(), m_list.plateOf(m_list.selectedRow()).center());
        return true;
    }
    return ToolView::eventFilter(watched, event);
}

void ClipboardModuleView::keyPressEvent(QKeyEvent *event)
{
    if (!handleKey(this, *event))
        ToolView::keyPressEvent(event);
}

void ClipboardModuleView::openMenu(const QUuid &id, const QPointF &position)
{
    const QModelIndex index = m_results.indexOf(id);
    if (!index.isValid())
        return;
    const bool isPinned = m_results.row(index.row()).pinned;
    m_menu = std::make_unique<NotchMenu>(m_context.appearance, this);
    m_menu->addEntry(QStringLiteral("Copy Again"), this, [this, id] { use(id); });
    m_menu->addEntry(isPinned ? QStringLiteral("Unpin") : QStringLiteral("Pin"), this, [this, id] { togglePin(id); });
    m_menu->addSeparator();
    m_menu->addEntry(
        QStringLiteral("Delete"), this, [this, id] { remove(id); }, NotchMenu::Purpose::Destructive);
    m_popups.openMenu(*m_menu, *m_list.viewport(), position);
}

void ClipboardModuleView::followResults()
{
    if (m_results.isSearching())
        return;
    const bool hasResults = m_results.rowCount() > 0;
    m_list.setVisible(hasResults);
    if (hasResults) {
        m_empty.disappear();
    } else {
        m_empty.setContent(m_history.rowCount() > 0 ? noMatches() : noItems());
        m_empty.appear();
    }
    const double height = *wantedBodyHeight();
    if (std::exchange(m_wantedHeight, height) != height)
        Q_EMIT wantedBodyHeightChanged();
}

void ClipboardModuleView::followHistory()
{
    const int count = m_history.rowCount();
    m_count.setCount(count);
    // The chrome shows them when it takes them over.
    for (QWidget *action : {static_cast<QWidget *>(&m_count), static_cast<QWidget *>(&m_clear)})
        action->setVisible(count > 0 && action->parentWidget() != this);
    if (std::exchange(m_shownCount, count) != count)
        Q_EMIT headerActionsChanged();
    followResults();
}

QRect ClipboardModuleView::bodyRect() const
{
    const int top = kSearchTop + InlineSearchField::kHeight + kSearchBottom;
    return {0, top, width(), std::max(height() - top, 0)};
}

void ClipboardModuleView::resizeEvent(QResizeEvent *)
{
    m_search.setGeometry(kSearchMargin, kSearchTop, width() - 2 * kSearchMargin, InlineSearchField::kHeight);
    m_list.setGeometry(bodyRect());
    m_empty.setGeometry(bodyRect());
}

void ClipboardModuleView::showEvent(QShowEvent *event)
{
    ToolView::showEvent(event);
    m_ageing = m_scheduler.every(kAgeing, this, [this] { m_list.viewport()->update(); });
}

void ClipboardModuleView::hideEvent(QHideEvent *event)
{
    ToolView::hideEvent(event);
    m_ageing.cancel();
}

} // namespace ostrelle
