#include "records/Motion.h"

#include <QEasingCurve>
#include <QPointF>

#include <algorithm>

namespace ostrelle::Motion {
namespace {

constexpr double kSurfaceResponse = 0.42;
constexpr double kSurfaceBounce = 0.16;
constexpr double kHoverResponse = 0.24;
constexpr double kHoverBounce = 0.08;
constexpr double kZoneResponse = 0.22;

AnimationIntensity currentIntensity = AnimationIntensity::Standard;

Spring bouncy(double baseResponse, double bounce, AnimationIntensity intensity)
{
    return {baseResponse * timeScale(intensity), 1 - bounce * bounceScale(intensity)};
}

} // namespace

AnimationIntensity intensity()
{
    return currentIntensity;
}

void setIntensity(AnimationIntensity intensity)
{
    currentIntensity = intensity;
}

double timeScale(AnimationIntensity intensity)
{
    switch (intensity) {
    case AnimationIntensity::Subtle:
        return 0.82;
    case AnimationIntensity::Standard:
        return 1.0;
    case AnimationIntensity::Expressive:
        return 1.14;
    }
    Q_UNREACHABLE();
}

double bounceScale(AnimationIntensity intensity)
{
    switch (intensity) {
    case AnimationIntensity::Subtle:
        return 0;
    case AnimationIntensity::Standard:
        return 1;
    case AnimationIntensity::Expressive:
        return 1.875;
    }
    Q_UNREACHABLE();
}

Spring damped(double baseResponse, AnimationIntensity intensity)
{
    return {baseResponse * timeScale(intensity), 1};
}

Spring surface(AnimationIntensity intensity)
{
    return bouncy(kSurfaceResponse, kSurfaceBounce, intensity);
}

Spring hover(AnimationIntensity intensity)
{
    return bouncy(kHoverResponse, kHoverBounce, intensity);
}

Spring zone(AnimationIntensity intensity)
{
    return damped(kZoneResponse, intensity);
}

std::chrono::nanoseconds fade(double baseSeconds, AnimationIntensity intensity)
{
    const std::chrono::duration<double> scaled(baseSeconds * timeScale(intensity));
    return std::chrono::round<std::chrono::nanoseconds>(scaled);
}

double easedOut(double progress)
{
    // The usual ease-out, cubic-bezier(0, 0, 0.58, 1).
    static const QEasingCurve curve = [] {
        QEasingCurve spline(QEasingCurve::BezierSpline);
        spline.addCubicBezierSegment(QPointF(0, 0), QPointF(0.58, 1), QPointF(1, 1));
        return spline;
    }();
    return curve.valueForProgress(std::clamp(progress, 0.0, 1.0));
}

} // namespace ostrelle::Motion
