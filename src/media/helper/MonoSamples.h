#pragma once

#include <optional>
#include <vector>

namespace ostrelle {

class AudioStream;

/// The part of a sound that its tempo is heard in, from 30 seconds (or, when that is less, a quarter of its length) on
/// and 45 seconds long at most, as one channel at kTempoSampleRate: the average of all. Only this part is decoded, and
/// what lies before it is skimmed where its place is not known. Nothing when there is none to be had.
std::optional<std::vector<float>> monoSamples(AudioStream &stream);

} // namespace ostrelle
