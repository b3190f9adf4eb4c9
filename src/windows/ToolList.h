#pragma once

#include "notch/controls/AnimatedNumber.h"
#include "notch/controls/ControlContext.h"
#include "records/KestroModule.h"

#include <QList>
#include <QPoint>
#include <QPointer>
#include <QSet>
#include <QWidget>

#include <memory>
#include <optional>
#include <vector>

namespace ostrelle {

class DragOut;
class DragText;
class LiftedRow;
class ToolRow;

/// The tools in their order. A row is dragged by the pointer, or moved by Alt with Up and Down while its switch has the
/// focus; as soon as the pointer is on another row, the dragged one takes that place. Within the window the list draws
/// a held row by itself. Outside it goes on as a drag of the desktop with the tool's raw value as text, and the list
/// does what such a drag says, whoever's it is.
class ToolList : public QWidget
{
    Q_OBJECT
public:
    ToolList(const ControlContext &context, DragOut &dragOut, DragText &dragText, QWidget *parent);
    ~ToolList() override;

    void showOrder(const QList<KestroModule> &order);
    void showEnabled(const QSet<KestroModule> &enabled);

Q_SIGNALS:
    void reordered(const QList<KestroModule> &order);
    void switched(KestroModule module, bool isShown);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dragLeaveEvent(QDragLeaveEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    /// A row and where it stands, which lags behind its place while it slides.
    struct Entry
    {
        ToolRow *row; ///< a child
        std::unique_ptr<AnimatedNumber> y;
    };

    QList<KestroModule> order() const;
    int indexOf(const QObject *row) const;
    int indexOf(KestroModule module) const;
    int indexAt(int y) const;
    void move(int from, int to);
    void place(const Entry &entry) const;

    /// What happens to the window while a row is held; true when that is not to go on to whom it was meant for.
    bool takeFromWindow(const QObject *watched, QEvent &event);
    void press(int index, const QPoint &position);
    void drag(const QPoint &position);
    void lift();
    void release();
    void cancel();
    /// Puts the dragged row down; it slides into its place.
    void settle();
    void endDrag();
    void dropLifted();

    /// The held row leaves the window.
    void takeOut();
    /// Moves the tool that the desktop's drag carries to where that drag is.
    void follow();
    void forgetCarried();

    ControlContext m_context;
    DragOut &m_dragOut;
    DragText &m_dragText;
    std::vector<Entry> m_entries; ///< in order
    QSet<KestroModule> m_enabled;
    ToolRow *m_dragged = nullptr; ///< from its press to its release
    QPoint m_grip;                ///< from the row's corner to the pointer
    QPoint m_pressed;
    int m_startIndex = 0;                  ///< of the dragged row when it was lifted
    QPointer<LiftedRow> m_lifted;          ///< a child of the window
    bool m_isOut = false;                  ///< the dragged row is the desktop's
    bool m_isSettling = false;             ///< it slides into its place
    std::unique_ptr<QObject> m_question;   ///< what the drag over the list says is asked for in its name
    std::optional<KestroModule> m_carried; ///< by the desktop's drag over the list, once it is known
    QPoint m_over;                         ///< where that drag is
};

} // namespace ostrelle
