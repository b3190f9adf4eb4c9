#pragma once

#include "notch/controls/AnimatedNumber.h"

#include <QObject>

class QScrollBar;
class QWheelEvent;

namespace ostrelle {

/// Moves a scroll bar smoothly: on springs to a place or by steps of a wheel, at once by the pixels of a touchpad.
/// Where others move the bar, it stays. Main thread.
class SmoothScroll
{
public:
    /// `wheelStep` is the distance of one step of a wheel, logical pixels. The bar outlives this.
    SmoothScroll(const ControlContext &context, QScrollBar &bar, double wheelStep);
    ~SmoothScroll();
    SmoothScroll(const SmoothScroll &) = delete;
    SmoothScroll &operator=(const SmoothScroll &) = delete;

    double position() const { return m_position.value(); }
    /// Where a movement leads that is on its way.
    double target() const { return m_position.target(); }
    void moveTo(double position);
    void jumpTo(double position);
    /// Ends a movement at its target, at once.
    void settle() { jumpTo(target()); }
    void turnWheel(const QWheelEvent &event);
    /// The bar's range changed.
    void clamp();

private:
    double clamped(double position) const;
    void show();

    QScrollBar &m_bar;
    double m_wheelStep;
    AnimatedNumber m_position;
    bool m_isShowing = false;
    QMetaObject::Connection m_movedByOthers;
};

} // namespace ostrelle
