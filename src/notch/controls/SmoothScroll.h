#pragma once

#include "notch/controls/AnimatedNumber.h"

class QScrollBar;
class QWheelEvent;

namespace ostrelle {

/// Moves a scroll bar smoothly: on springs to a place or by steps of a wheel, at once by the pixels of a touchpad.
class SmoothScroll
{
public:
    /// `wheelStep` is the distance of one step of a wheel, logical pixels. The bar outlives this.
    SmoothScroll(const ControlContext &context, QScrollBar &bar, double wheelStep);

    /// Where a movement leads that is on its way.
    double target() const { return m_position.target(); }
    void moveTo(double position);
    void jumpTo(double position);
    void turnWheel(const QWheelEvent &event);
    /// The bar's range changed.
    void clamp();

private:
    /// The bar may have been moved by others.
    void follow();
    double clamped(double position) const;
    void show();

    QScrollBar &m_bar;
    double m_wheelStep;
    AnimatedNumber m_position;
};

} // namespace ostrelle
