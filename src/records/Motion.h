#pragma once

#include "foundation/Spring.h"
#include "records/AnimationIntensity.h"

#include <chrono>

namespace ostrelle {

/// Springs and durations whose character follows the process-wide intensity. Main thread.
namespace Motion {

/// The intensity that every animation reads; a copy of the setting, written only by the settings store.
AnimationIntensity intensity();
void setIntensity(AnimationIntensity intensity);

/// 0.82, 1.0, 1.14.
double timeScale(AnimationIntensity intensity);
/// 0, 1, 1.875.
double bounceScale(AnimationIntensity intensity);

/// A spring without overshoot; base responses in use are 0.16, 0.22 and 0.30 s.
Spring damped(double baseResponse, AnimationIntensity intensity = Motion::intensity());
/// Response 0.42 s, bounce 0.16: opening and closing, switching tools.
Spring surface(AnimationIntensity intensity = Motion::intensity());
/// Response 0.24 s, bounce 0.08: hover and press feedback.
Spring hover(AnimationIntensity intensity = Motion::intensity());
/// Response 0.22 s, no bounce: landing zones, screen metrics.
Spring zone(AnimationIntensity intensity = Motion::intensity());
/// A short ease-out; base durations in use are 0.16 and 0.22 s.
std::chrono::nanoseconds fade(double baseSeconds, AnimationIntensity intensity = Motion::intensity());
/// How far a fade has come after this part (0 to 1, clamped) of its time: fast at first, slow at the end.
double easedOut(double progress);

} // namespace Motion
} // namespace ostrelle
