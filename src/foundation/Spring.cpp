#include "foundation/Spring.h"

#include <cmath>
#include <numbers>

namespace ostrelle {
namespace {

/// exp(-decay t) cosh(rate t) and exp(-decay t) sinh(rate t) / rate, where the square of `rate` may be negative: then
/// they are cos and sin.
struct Envelope
{
    double cosine;
    double sine;
};

// Both functions are analytic in the squared rate. Around critical damping the usual forms divide zero by zero, the
// series does not; at the border its first dropped term is below the precision of a double.
constexpr double kSeriesLimit = 1e-2;

Envelope envelopeAt(double decay, double omega, double zeta, double seconds)
{
    const double squaredRate = omega * omega * (zeta - 1) * (zeta + 1);
    const double s = squaredRate * seconds * seconds;
    if (std::abs(s) < kSeriesLimit) {
        const double fall = std::exp(-decay * seconds);
        const double cosine = 1 + s / 2 * (1 + s / 12 * (1 + s / 30 * (1 + s / 56)));
        const double sine = 1 + s / 6 * (1 + s / 20 * (1 + s / 42 * (1 + s / 72)));
        return {fall * cosine, fall * sine * seconds};
    }
    if (s < 0) {
        const double fall = std::exp(-decay * seconds);
        const double rate = std::sqrt(-squaredRate);
        return {fall * std::cos(rate * seconds), fall * std::sin(rate * seconds) / rate};
    }
    // As two decaying exponentials: cosh alone would overflow in a long wait. The slow exponent is written without the
    // difference of two nearly equal numbers.
    const double rate = std::sqrt(squaredRate);
    const double slow = std::exp(-omega * omega / (decay + rate) * seconds);
    const double fast = std::exp(-(decay + rate) * seconds);
    return {(slow + fast) / 2, (slow - fast) / (2 * rate)};
}

} // namespace

Spring::State Spring::advanced(State start, double seconds) const
{
    const double omega = 2 * std::numbers::pi / response;
    const double decay = dampingFraction * omega;
    const Envelope at = envelopeAt(decay, omega, dampingFraction, seconds);
    const double x = start.displacement;
    const double v = start.velocity;
    return {x * at.cosine + (v + decay * x) * at.sine, v * at.cosine - (decay * v + omega * omega * x) * at.sine};
}

} // namespace ostrelle
