#pragma once

#include "tempo/OnsetEnvelopes.h"

#include <cstddef>
#include <optional>
#include <span>

namespace ostrelle {

/// The tempo of mono samples at kTempoSampleRate, in beats per minute from 60 to 200: a whole number, or one with one
/// decimal. Nothing when they are 44,100 or fewer (four seconds), silent, or have no steady beat. Like all of its
/// stages it may run on any thread, and answers the same whenever it is asked.
std::optional<double> estimateTempo(std::span<const float> samples);

/// The same of the envelopes, which have to be longer than 352 values: the lag at which the full one is most alike
/// itself, at its multiples too, unless the low one is more so at a related lag.
std::optional<double> tempoFrom(const OnsetEnvelopes &envelopes);

/// The place of the peak at `index` between its neighbours, by the parabola through the three; `index` itself at either
/// end, and where there is no peak within one step.
double refine(std::span<const double> scores, std::size_t index);

/// A tempo brought into the usual range by octaves (below 78 doubled, above 180 halved) and rounded: to a whole number
/// when one is nearer than a quarter, else to one decimal. Nothing outside 60 to 200.
std::optional<double> foldedTempo(double bpm);

} // namespace ostrelle
