#pragma once

#include "notch/controls/AnimatedNumber.h"

#include <QPixmap>
#include <QWidget>

#include <functional>

class QPainter;

namespace ostrelle {

/// A row under a drag: above everything, with a shadow, where the pointer holds it. Passes the pointer through.
class LiftedRow : public QWidget
{
    Q_OBJECT
public:
    /// `picture` is the row's content without what lies behind it. `parent` covers all places that it can be at.
    LiftedRow(const ControlContext &context, const QPixmap &picture, QWidget *parent);

    /// The row's top left corner in the parent's coordinates.
    void follow(const QPointF &corner);
    /// Slides there and calls `done`.
    void settle(const QPointF &corner, std::function<void()> done);
    /// The row as it is held, without its shadow: a desktop without compositor would draw one in black.
    QPixmap picture() const;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void place(const QPointF &corner);
    void paintRow(QPainter &painter, const QPointF &corner) const;

    ControlContext m_context;
    QPixmap m_picture;
    QPixmap m_shadow; ///< null until it is painted
    QPointF m_corner;
    QPointF m_start;
    QPointF m_end;
    std::function<void()> m_done;
    AnimatedNumber m_progress;
};

} // namespace ostrelle
