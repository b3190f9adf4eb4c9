#pragma once

#include "notch/controls/AnimatedNumber.h"
#include "notch/controls/ControlContext.h"

#include <QAbstractSlider>

namespace ostrelle {

/// A thin bar that shows where in a sound one is, and goes elsewhere by a press, a drag or keys. Its values are
/// milliseconds. Disabled in the middle of a drag it lets go of it.
class SeekBar : public QAbstractSlider
{
    Q_OBJECT
public:
    static constexpr int kHeight = 14;
    static constexpr int kStep = 5000;

    SeekBar(const ControlContext &context, QWidget *parent);

    /// Seconds; a length of 0 is an unknown one, in which nobody can go elsewhere. While it is dragged it shows where
    /// it is dragged to.
    void setTime(double position, double length);
    /// What it shows, seconds.
    double shownPosition() const;
    /// Fades it, 0 to 1.
    void setPresence(double presence);

Q_SIGNALS:
    /// The user wants to go there, seconds.
    void sought(double position);

protected:
    bool event(QEvent *event) override;
    void changeEvent(QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    int valueAt(double x) const;

    ControlContext m_context;
    AnimatedNumber m_hover;
    double m_presence = 1;
};

} // namespace ostrelle
