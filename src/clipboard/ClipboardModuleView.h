#pragma once

#include "clipboard/ClipboardListModel.h"
#include "clipboard/ClipboardListView.h"
#include "clipboard/ClipboardProxyModel.h"
#include "clipboard/ClipboardRowPictures.h"
#include "foundation/Task.h"
#include "notch/ToolView.h"

#include <memory>

class QKeyEvent;

namespace ostrelle {

class ClipboardPort;
class ClipboardService;
class EmptyStateView;
class Haptics;
class InlineSearchField;
class ItemCount;
class NotchMenu;
class Popups;
class TaskScheduler;

/// The clipboard tool: a search field over the history. Whatever part of it has the focus, the arrow keys, Page Up,
/// Page Down, Ctrl+Home and Ctrl+End move the selection, Return uses and Delete deletes the selected item, and Ctrl+Z
/// brings back what was deleted last.
class ClipboardModuleView : public ToolView
{
    Q_OBJECT
public:
    ClipboardModuleView(ClipboardService &service, ClipImages &images, Haptics &haptics, FileIcons &icons,
                        ClipboardPort &pasteboard, Popups &popups, TaskScheduler &scheduler,
                        const ControlContext &context, QWidget *parent);
    ~ClipboardModuleView() override;

    std::optional<double> wantedBodyHeight() const override;
    QList<QWidget *> headerActions() override;
    void appeared() override;
    void undo() override;

    InlineSearchField &searchField() { return m_search; }
    ClipboardListView &list() { return m_list; }
    const ClipboardProxyModel &results() const { return m_results; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void use(const QUuid &id);
    void remove(const QUuid &id);
    void togglePin(const QUuid &id);
    void moveSelection(int step);
    bool handlePlainKey(int key);
    bool handleUndo(const QObject *focused);
    bool handleKey(const QObject *focused, const QKeyEvent &event);
    void openMenu(const QUuid &id, const QPointF &position);

    void followResults();
    void followHistory();
    QRect bodyRect() const;

    ClipboardService &m_service;
    Haptics &m_haptics;
    Popups &m_popups;
    TaskScheduler &m_scheduler;
    ControlContext m_context;

    ClipboardListModel m_history;
    ClipboardProxyModel m_results;
    ClipboardRowPictures m_pictures;

    InlineSearchField &m_search;
    ClipboardListView &m_list;
    EmptyStateView &m_empty;
    ItemCount &m_count;
    GlyphButton &m_clear;
    std::unique_ptr<NotchMenu> m_menu;
    double m_wantedHeight = 0;
    int m_shownCount = -1;
    Task m_ageing;
};

} // namespace ostrelle
