#pragma once

namespace ostrelle {

/// A damped harmonic oscillator described by its undamped period and its damping fraction, solved in closed form:
/// omega = 2 pi / response, x'' = -omega^2 (x - target) - 2 zeta omega x'.
struct Spring
{
    double response = 0.42;       ///< seconds, > 0
    double dampingFraction = 1.0; ///< 0 (never rests) ... 1 (critical); above 1 is overdamped

    /// Displacement from the target and its velocity (per second).
    struct State
    {
        double displacement = 0;
        double velocity = 0;
    };

    /// The state `seconds` after `start`.
    State advanced(State start, double seconds) const;

    friend bool operator==(const Spring &, const Spring &) = default;
};

} // namespace ostrelle
