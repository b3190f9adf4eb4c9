#include "notch/controls/SmoothScroll.h"

#include "records/Motion.h"

#include <QScrollBar>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace ostrelle {
namespace {

constexpr double kMoveResponse = 0.22;
constexpr double kWheelResponse = 0.16;
constexpr double kNotch = 120; ///< eighths of a degree in one step of a wheel
constexpr double kPixelRest = 0.25;

} // namespace

SmoothScroll::SmoothScroll(const ControlContext &context, QScrollBar &bar, double wheelStep)
    : m_bar(bar)
    , m_wheelStep(wheelStep)
    , m_position(
          context, bar.value(), [this] { show(); }, kPixelRest)
    , m_movedByOthers(QObject::connect(&bar, &QScrollBar::valueChanged, &bar, [this](int value) {
        if (!m_isShowing)
            m_position.jumpTo(value);
    }))
{
}

SmoothScroll::~SmoothScroll()
{
    QObject::disconnect(m_movedByOthers);
}

double SmoothScroll::clamped(double position) const
{
    return std::clamp(position, 0.0, static_cast<double>(m_bar.maximum()));
}

void SmoothScroll::moveTo(double position)
{
    m_position.animateTo(clamped(position), Motion::damped(kMoveResponse));
}

void SmoothScroll::jumpTo(double position)
{
    m_position.jumpTo(clamped(position));
    show();
}

void SmoothScroll::turnWheel(const QWheelEvent &event)
{
    const int pixels = event.pixelDelta().y();
    const int angle = event.angleDelta().y();
    const double distance = -(pixels != 0 ? pixels : angle * m_wheelStep / kNotch);
    if (pixels != 0 || std::abs(angle) < kNotch)
        jumpTo(m_position.target() + distance);
    else
        m_position.animateTo(clamped(m_position.target() + distance), Motion::damped(kWheelResponse));
}

void SmoothScroll::clamp()
{
    if (m_position.target() > m_bar.maximum())
        jumpTo(m_bar.maximum());
}

void SmoothScroll::show()
{
    m_isShowing = true;
    m_bar.setValue(static_cast<int>(std::lround(m_position.value())));
    m_isShowing = false;
}

} // namespace ostrelle
