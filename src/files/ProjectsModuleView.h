#pragma once

#include "files/ProjectsListModel.h"
#include "files/ProjectsListView.h"
#include "notch/ToolView.h"

#include <memory>

class QKeyEvent;

namespace ostrelle {

class ActionPrompt;
class ClipboardPort;
class DropOverlay;
class DropWell;
class FileOpening;
class GlyphButton;
class NotchMenu;
class Popups;

/// The projects tool: the pinned folders, each opened by a click. Up, Down, Page Up, Page Down, Home and End choose a
/// folder, Return opens, F2 renames and Delete removes it, Alt with Up or Down moves it, and Ctrl+Z takes the last
/// removal or move back. Folders dropped on it are pinned.
class ProjectsModuleView : public ToolView
{
    Q_OBJECT
public:
    ProjectsModuleView(ProjectsService &service, FilePresence &presence, FileOpening &opening, ClipboardPort &clipboard,
                       Popups &popups, const ControlContext &context, QWidget *parent);
    ~ProjectsModuleView() override;

    std::optional<double> wantedBodyHeight() const override;
    QList<QWidget *> headerActions() override;
    void appeared() override;
    /// Whether there may be a folder among them that is not pinned yet.
    bool acceptsDrop(const QStringList &paths) const override;
    void setDropTargeted(bool targeted) override;
    bool dropFiles(const QStringList &paths) override;
    void undo() override;

    ProjectsListView &list() { return m_list; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    QString pathOf(const QUuid &id) const;
    void open(const QUuid &id);
    void remove(const QUuid &id);
    void move(const QUuid &id, int place, ProjectsService::Step step);
    void openMenu(const QUuid &id, const QPointF &position);

    bool handleKey(const QKeyEvent &event);
    bool handlePlainKey(int key);
    void moveSelection(int step);
    void moveActive(int step);

    void followList();
    void placeFocus();

    ProjectsService &m_service;
    FilePresence &m_presence;
    FileOpening &m_opening;
    Popups &m_popups;
    ControlContext m_context;

    ProjectsListModel m_projects;
    ProjectsListView &m_list;
    DropWell &m_well;
    ActionPrompt &m_prompt;
    DropOverlay &m_overlay;
    GlyphButton &m_add;
    std::unique_ptr<NotchMenu> m_menu;
    double m_wantedHeight = 0;
};

} // namespace ostrelle
