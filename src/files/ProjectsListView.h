#pragma once

#include "files/ProjectRowDelegate.h"
#include "files/ReorderDrag.h"
#include "notch/controls/RowFades.h"
#include "notch/controls/RowListView.h"

#include <array>
#include <optional>

namespace ostrelle {

class ClipboardPort;
class GlyphButton;
class ProjectsListModel;
class RenameField;

/// The scrolling list of the projects. One row is active: the one under the pointer, with its actions, until a key
/// chooses another. Rows are dragged to other places and renamed in place.
class ProjectsListView : public RowListView
{
    Q_OBJECT
public:
    ProjectsListView(const ControlContext &context, ClipboardPort &clipboard, ProjectsListModel &model,
                     QWidget *parent);
    ~ProjectsListView() override;

    QUuid idAt(int row) const override;
    /// Null or -1: none.
    QUuid activeId() const { return m_active; }
    int activeRow() const { return rowOf(m_active); }
    /// By a key: the row is brought to the middle.
    void select(const QUuid &id);

    void beginRename(const QUuid &id);
    RenameField &renameField() { return m_field; }

    bool isDragging() const { return m_drag.isRunning(); }
    /// The dragged row goes back to where it was.
    void cancelDrag();
    /// Ends what is going on: a dragged row stays where it is, a changed name is taken.
    void finish();

Q_SIGNALS:
    void clicked(const QUuid &id);
    void renamed(const QUuid &id, const QString &name);
    void revealed(const QUuid &id);
    void removed(const QUuid &id);
    /// To be done before the signal returns.
    void moved(const QUuid &id, int place, ostrelle::ProjectsService::Step step);
    /// `position` in the coordinates of viewport().
    void menuRequested(const QUuid &id, const QPointF &position);

protected:
    void rowsMoved() override;
    void scrollContentsBy(int dx, int dy) override;
    double offsetOf(const QUuid &id) const override;
    int topmostRow() const override { return rowOf(m_drag.row()); }
    bool viewportEvent(QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;

private:
    struct Place
    {
        QPointF local;
        QPointF global;
    };
    struct Press
    {
        QUuid row;
        Place place;
    };

    GlyphButton &makeAction(int action, const QString &help);
    ProjectRowDelegate::Look lookOf(const QUuid &id) const;
    QUuid rowWithActions() const;
    QUuid idAt(const QPointF &position) const;
    void followPointer();
    void followModel();
    void refresh();
    void endRename();

    ProjectRowDelegate m_rows;
    std::array<GlyphButton *, 3> m_actions;
    RenameField &m_field;
    RowFades m_tints;
    RowFades m_actionFades;
    ReorderDrag m_drag;

    QUuid m_active;
    bool m_isByPointer = false; ///< the active row is the one under the pointer
    QUuid m_renamed;
    std::optional<Place> m_pointer;
    std::optional<Press> m_press;
};

} // namespace ostrelle
