#pragma once

#include "notch/controls/AnimatedNumber.h"
#include "notch/controls/ControlContext.h"
#include "records/KestroModule.h"

#include <QList>
#include <QPoint>
#include <QSet>
#include <QWidget>

#include <memory>
#include <vector>

namespace ostrelle {

class LiftedRow;
class ToolRow;

/// The tools in their order. A row is dragged by the pointer, or moved by Alt with Up and Down while its switch has the
/// focus; as soon as the pointer is on another row, the dragged one takes that place.
class ToolList : public QWidget
{
    Q_OBJECT
public:
    ToolList(const ControlContext &context, QWidget *parent);
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

private:
    /// A row and where it stands, which lags behind its place while it slides.
    struct Entry
    {
        ToolRow *row; ///< a child
        std::unique_ptr<AnimatedNumber> y;
    };

    QList<KestroModule> order() const;
    int indexOf(const QObject *row) const;
    void move(int from, int to);
    void place(const Entry &entry) const;

    void press(int index, const QPoint &position);
    void drag(const QPoint &position);
    void lift();
    void release();
    void cancel();
    /// Puts the dragged row down; it slides into its place.
    void settle();
    void endDrag();

    ControlContext m_context;
    std::vector<Entry> m_entries; ///< in order
    QSet<KestroModule> m_enabled;
    ToolRow *m_dragged = nullptr; ///< from its press to its release
    QPoint m_grip;                ///< from the row's corner to the pointer
    QPoint m_pressed;
    int m_startIndex = 0; ///< of the dragged row when it was lifted
    LiftedRow *m_lifted = nullptr;
};

} // namespace ostrelle
