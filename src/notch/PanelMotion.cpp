#include "notch/PanelMotion.h"

#include "notch/NotchAppearance.h"
#include "records/Motion.h"

#include <algorithm>

namespace ostrelle {
namespace {

/// Half a pixel at scale 2.
constexpr double kFrameRest = 0.25;
constexpr double kFractionRest = 1.0 / 510;
constexpr double kArrivalStart = 0.3;
constexpr double kArrivalSpan = 0.5;
constexpr double kDepartureSeconds = 0.131;
/// So short that zones can be told from the glass in the second frame.
constexpr double kZonesArrivalSeconds = 0.08;

Spring springOf(SurfaceMotion motion)
{
    switch (motion) {
    case SurfaceMotion::Hover:
        return Motion::hover();
    case SurfaceMotion::Zone:
        return Motion::zone();
    case SurfaceMotion::None:
    case SurfaceMotion::Surface:
        break;
    }
    return Motion::surface();
}

} // namespace

PanelMotion::PanelMotion(const ControlContext &context, double peekOpacity, std::function<void()> changed)
    : m_context(context)
    , m_changed(std::move(changed))
    , m_frame({}, kFrameRest)
    , m_peek(peekOpacity, kFractionRest)
    , m_toolness(0, kFractionRest)
    , m_switch(1, kFractionRest)
    , m_zones(0, kFractionRest)
    , m_peekNow(peekOpacity)
{
}

PanelMotion::~PanelMotion()
{
    m_context.clock.remove(*this);
}

double PanelMotion::arrival() const
{
    return std::clamp((m_switchNow - kArrivalStart) / kArrivalSpan, 0.0, 1.0);
}

bool PanelMotion::isMoving() const
{
    return m_frame.isMoving() || m_peek.isMoving() || m_toolness.isMoving() || m_switch.isMoving() ||
           m_zones.isMoving() || m_zonesOpacity.isRunning() || m_departure.isRunning();
}

void PanelMotion::moveTo(const PanelFrame &target, SurfaceMotion motion)
{
    if (target == m_frame.target())
        return;
    if (motion == SurfaceMotion::None || jumps()) {
        m_frame.jumpTo(target);
        m_current = target;
        return;
    }
    m_frame.animateTo(target, springOf(motion), m_context.clock.now());
    run();
}

void PanelMotion::setPeekOpacity(double target)
{
    if (target == m_peek.target())
        return;
    if (jumps()) {
        m_peek.jumpTo(target);
        m_peekNow = target;
        return;
    }
    m_peek.animateTo(target, Motion::hover(), m_context.clock.now());
    run();
}

void PanelMotion::setZones(double target)
{
    if (target == m_zones.target())
        return;
    if (jumps() || m_current.contentOpacity() <= 0) {
        m_zones.jumpTo(target);
        m_zonesNow = target;
        return;
    }
    m_zones.animateTo(target, Motion::surface(), m_context.clock.now());
    run();
}

void PanelMotion::setZonesOpacity(double target)
{
    if (target == m_zonesOpacity.target())
        return;
    if (jumps()) {
        m_zonesOpacity.jumpTo(target);
        m_zonesOpacityNow = target;
        return;
    }
    const double seconds = target > 0 ? kZonesArrivalSeconds : kDepartureSeconds;
    m_zonesOpacity.start(m_zonesOpacityNow, target, Motion::fade(seconds), m_context.clock.now());
    run();
}

void PanelMotion::switchContent(double toolness, double departingOpacity)
{
    if (jumps() || m_current.contentOpacity() <= 0) {
        m_toolness.jumpTo(toolness);
        m_switch.jumpTo(1);
        m_toolnessNow = toolness;
        m_switchNow = 1;
        m_departure.jumpTo(0);
        m_departureNow = 0;
        return;
    }
    const MonotonicTime now = m_context.clock.now();
    m_toolness.animateTo(toolness, Motion::surface(), now);
    m_switch.jumpTo(0);
    m_switch.animateTo(1, Motion::surface(), now);
    m_switchNow = 0;
    m_departure.start(departingOpacity, 0, Motion::fade(kDepartureSeconds), now);
    m_departureNow = departingOpacity;
    run();
}

bool PanelMotion::jumps() const
{
    return m_context.appearance.reducesMotion();
}

void PanelMotion::run()
{
    m_context.clock.add(*this);
}

bool PanelMotion::advance(MonotonicTime now)
{
    m_current = m_frame.value(now);
    m_peekNow = m_peek.value(now);
    m_toolnessNow = m_toolness.value(now);
    m_switchNow = m_switch.value(now);
    m_zonesNow = m_zones.value(now);
    m_zonesOpacityNow = m_zonesOpacity.value(now);
    m_departureNow = m_departure.value(now);
    m_changed();
    return isMoving();
}

} // namespace ostrelle
