#pragma once

#include <optional>
#include <span>
#include <vector>

namespace ostrelle {

/// Frames per second of the mono samples that the tempo is found in.
inline constexpr int kTempoSampleRate = 11025;
/// Samples from one value of an envelope to the next.
inline constexpr int kOnsetHop = 128;

/// How strongly sounds begin, a value every kOnsetHop samples: over the whole spectrum, and below about 180 Hz, where
/// bass and drums are. Both of equal length.
struct OnsetEnvelopes
{
    std::vector<float> full;
    std::vector<float> low;
};

/// The spectral flux of mono samples at kTempoSampleRate (frames of 512, Hann window; the sum of what every bin's
/// magnitude has gained since the frame before, the first one since silence), each above its local mean. Their scale is
/// arbitrary. Nothing for fewer than 33 frames.
std::optional<OnsetEnvelopes> onsetEnvelopes(std::span<const float> samples);

/// What of each value lies above the mean of the last 30, itself included; 0 where it does not. Single precision with a
/// running sum.
std::vector<float> rectifyAgainstLocalMean(std::span<const float> values);

} // namespace ostrelle
