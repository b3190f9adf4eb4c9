#include "files/ProjectsModuleView.h"

#include "files/FilePresence.h"
#include "foundation/MakeChild.h"
#include "notch/controls/ActionPrompt.h"
#include "notch/controls/DropOverlay.h"
#include "notch/controls/DropWell.h"
#include "notch/controls/FilledButton.h"
#include "notch/controls/GlyphButton.h"
#include "notch/controls/NotchMenu.h"
#include "platform/FileOpening.h"
#include "platform/Popups.h"
#include "records/PathText.h"
#include "records/RecordLists.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QSet>

#include <algorithm>
#include <functional>
#include <utility>

namespace ostrelle {
namespace {

constexpr int kWellInset = 14;
/// Header and tool strip.
constexpr double kAboveBody = 106;
constexpr double kPromptHeight = 272;
constexpr double kTallestList = 230;
constexpr double kListPadding = 16;

} // namespace

ProjectsModuleView::ProjectsModuleView(ProjectsService &service, FilePresence &presence, FileOpening &opening,
                                       ClipboardPort &clipboard, Popups &popups, const ControlContext &context,
                                       QWidget *parent)
    : ToolView(parent)
    , m_service(service)
    , m_presence(presence)
    , m_opening(opening)
    , m_popups(popups)
    , m_context(context)
    , m_projects(service, presence)
    , m_list(makeChild<ProjectsListView>(this, context, clipboard, m_projects))
    , m_well(makeChild<DropWell>(this, context))
    , m_prompt(makeChild<ActionPrompt>(&m_well, context,
                                       ActionPrompt::Content{.symbol = QStringLiteral("folder.badge.plus"),
                                                             .message = QStringLiteral("Add a project folder"),
                                                             .action = QStringLiteral("Choose Folder…")}))
    , m_overlay(makeChild<DropOverlay>(this, context))
    , m_add(makeChild<GlyphButton>(
          this, context,
          GlyphButton::Content{.symbol = QStringLiteral("plus"), .help = QStringLiteral("Add project folder")}))
{
    // The chrome shows it when it takes it over.
    m_add.hide();
    m_add.installEventFilter(this);
    m_list.installEventFilter(this);
    for (const QAbstractButton *button :
         {static_cast<QAbstractButton *>(&m_add), static_cast<QAbstractButton *>(&m_prompt.button())})
        connect(button, &QAbstractButton::clicked, &service, &ProjectsService::promptToAdd);
    connect(&m_list, &ProjectsListView::clicked, this, &ProjectsModuleView::open);
    connect(&m_list, &ProjectsListView::renamed, &service, &ProjectsService::rename);
    connect(&m_list, &ProjectsListView::revealed, this,
            [this](const QUuid &id) { m_opening.reveal(pathOf(id), ActivationToken()); });
    connect(&m_list, &ProjectsListView::removed, &service, &ProjectsService::remove);
    connect(&m_list, &ProjectsListView::moved, this, &ProjectsModuleView::move);
    connect(&m_list, &ProjectsListView::menuRequested, this, &ProjectsModuleView::openMenu);
    connect(&m_projects, &ProjectsListModel::followed, this, &ProjectsModuleView::followList);
    followList();
}

ProjectsModuleView::~ProjectsModuleView() = default;

std::optional<double> ProjectsModuleView::wantedBodyHeight() const
{
    const int count = m_projects.rowCount();
    if (count == 0)
        return kPromptHeight;
    return std::min(count * double(RowPlate::kPitch) + kListPadding, kTallestList) + kAboveBody;
}

QList<QWidget *> ProjectsModuleView::headerActions()
{
    return {&m_add};
}

void ProjectsModuleView::appeared()
{
    placeFocus();
}

void ProjectsModuleView::placeFocus()
{
    if (m_projects.rowCount() > 0)
        m_list.setFocus(Qt::OtherFocusReason);
    else
        m_prompt.button().setFocus(Qt::OtherFocusReason);
}

bool ProjectsModuleView::acceptsDrop(const QStringList &paths) const
{
    QSet<QString> pinned;
    for (const Project &project : m_service.projects())
        pinned.insert(project.path);
    return std::any_of(paths.begin(), paths.end(), [&](const QString &path) {
        const QString standardized = standardizedPath(path);
        if (pinned.contains(standardized))
            return false;
        const FileFacts facts = m_presence.facts(standardized);
        return facts.isFolder() || facts.kind == FileFacts::Kind::Unknown;
    });
}

void ProjectsModuleView::setDropTargeted(bool targeted)
{
    m_well.setTargeted(targeted);
    m_overlay.setTargeted(targeted && m_projects.rowCount() > 0);
}

bool ProjectsModuleView::dropFiles(const QStringList &paths)
{
    if (!acceptsDrop(paths))
        return false;
    m_service.add(paths);
    return true;
}

void ProjectsModuleView::undo()
{
    if (!m_list.isDragging() && m_service.canUndo())
        m_service.undo();
}

QString ProjectsModuleView::pathOf(const QUuid &id) const
{
    const int row = m_list.rowOf(id);
    return row >= 0 ? m_projects.project(row).path : QString();
}

void ProjectsModuleView::open(const QUuid &id)
{
    const QString path = pathOf(id);
    if (path.isEmpty() || !m_presence.facts(path).isPresent())
        return;
    m_opening.open(path, ActivationToken());
    Q_EMIT dismissRequested();
}

void ProjectsModuleView::remove(const QUuid &id)
{
    const int row = m_list.rowOf(id);
    m_service.remove(id);
    const int count = m_projects.rowCount();
    if (m_list.activeId().isNull() && count > 0)
        m_list.select(m_list.idAt(std::min(row, count - 1)));
}

void ProjectsModuleView::move(const QUuid &id, int place, ProjectsService::Step step)
{
    const int from = m_list.rowOf(id);
    m_service.move({from}, destinationOf(from, place), step);
}

void ProjectsModuleView::openMenu(const QUuid &id, const QPointF &position)
{
    m_menu = std::make_unique<NotchMenu>(m_context.appearance, this);
    m_menu->addEntry(QStringLiteral("Open in Finder"), this,
                     [this, id] { m_opening.open(pathOf(id), ActivationToken()); });
    m_menu->addEntry(QStringLiteral("Reveal in Finder"), this,
                     [this, id] { m_opening.reveal(pathOf(id), ActivationToken()); });
    m_menu->addEntry(QStringLiteral("Rename…"), this, [this, id] { m_list.beginRename(id); });
    m_menu->addSeparator();
    m_menu->addEntry(
        QStringLiteral("Remove"), this, [this, id] { m_service.remove(id); }, NotchMenu::Purpose::Destructive);
    m_popups.openMenu(*m_menu, *m_list.viewport(), position);
}

void ProjectsModuleView::moveSelection(int step)
{
    const int count = m_projects.rowCount();
    if (count == 0)
        return;
    const int active = m_list.activeRow();
    const int from = active >= 0 ? active : step > 0 ? -1 : count;
    m_list.select(m_list.idAt(std::clamp(from + step, 0, count - 1)));
}

void ProjectsModuleView::moveActive(int step)
{
    const QUuid id = m_list.activeId();
    const int place = m_list.activeRow() + step;
    if (id.isNull() || place < 0 || place >= m_projects.rowCount())
        return;
    move(id, place, ProjectsService::Step::First);
    m_list.select(id);
}

bool ProjectsModuleView::handlePlainKey(int key)
{
    const QUuid active = m_list.activeId();
    const int count = m_projects.rowCount();
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
    case Qt::Key_Home:
        moveSelection(-count);
        return true;
    case Qt::Key_End:
        moveSelection(count);
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        open(active);
        return true;
    case Qt::Key_F2:
        m_list.beginRename(active);
        return true;
    case Qt::Key_Delete:
        if (!active.isNull())
            remove(active);
        return true;
    default:
        return false;
    }
}

bool ProjectsModuleView::handleKey(const QKeyEvent &event)
{
    if (m_list.isDragging()) {
        if (event.key() == Qt::Key_Escape)
            m_list.cancelDrag();
        return true;
    }
    const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeyboardModifiers(Qt::KeypadModifier);
    if (modifiers == Qt::AltModifier && (event.key() == Qt::Key_Up || event.key() == Qt::Key_Down)) {
        moveActive(event.key() == Qt::Key_Up ? -1 : 1);
        return true;
    }
    return modifiers == Qt::NoModifier && handlePlainKey(event.key());
}

bool ProjectsModuleView::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress) {
        const auto &key = *static_cast<QKeyEvent *>(event);
        // A focused button is what Return presses.
        const bool isForButton = watched == &m_add && (key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter);
        if (!isForButton && handleKey(key))
            return true;
    } else if (event->type() == QEvent::ContextMenu && m_list.activeRow() >= 0 &&
               static_cast<QContextMenuEvent *>(event)->reason() == QContextMenuEvent::Keyboard) {
        openMenu(m_list.activeId(), m_list.plateOf(m_list.activeRow()).center());
        return true;
    }
    return ToolView::eventFilter(watched, event);
}

void ProjectsModuleView::keyPressEvent(QKeyEvent *event)
{
    if (!handleKey(*event))
        ToolView::keyPressEvent(event);
}

void ProjectsModuleView::followList()
{
    const bool hasProjects = m_projects.rowCount() > 0;
    const bool isChange = m_list.isHidden() == hasProjects;
    const bool hadFocus = m_list.hasFocus() || m_prompt.button().hasFocus();
    m_list.setVisible(hasProjects);
    m_well.setVisible(!hasProjects);
    if (isChange && hadFocus)
        placeFocus();
    const double height = *wantedBodyHeight();
    if (std::exchange(m_wantedHeight, height) != height)
        Q_EMIT wantedBodyHeightChanged();
}

void ProjectsModuleView::resizeEvent(QResizeEvent *)
{
    m_list.setGeometry(rect());
    m_well.setGeometry(rect().adjusted(kWellInset, kWellInset, -kWellInset, -kWellInset));
    m_overlay.setGeometry(rect());
}

void ProjectsModuleView::hideEvent(QHideEvent *event)
{
    m_list.finish();
    ToolView::hideEvent(event);
}

} // namespace ostrelle
