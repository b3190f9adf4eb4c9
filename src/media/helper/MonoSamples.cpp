#include "media_helper/MonoSamples.h"

#include "media_helper/AudioStream.h"
#include "tempo/OnsetEnvelopes.h"

#include <soxr.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <utility>

namespace ostrelle {
namespace {

constexpr double kLatestStartSeconds = 30;
constexpr double kStartPart = 0.25;
constexpr double kMostSeconds = 45;

/// Samples that are decoded at once, of all channels together.
constexpr std::size_t kBlock = 32 * 1024;

struct Excerpt
{
    std::int64_t start = 0; ///< frames
    std::int64_t count = 0;
};

Excerpt excerptOf(AudioStream &stream)
{
    const double rate = stream.format().sampleRate;
    // A longer sound has the same excerpt as one of this length.
    const auto longest = static_cast<std::int64_t>(rate * kLatestStartSeconds / kStartPart);
    const double length = double(stream.countFrames(longest));
    const double start = std::min(rate * kLatestStartSeconds, length * kStartPart);
    const double count = std::min(rate * kMostSeconds, length - start);
    return {static_cast<std::int64_t>(start), static_cast<std::int64_t>(std::max(0.0, count))};
}

struct DeleteResampler
{
    void operator()(soxr *resampler) const { soxr_delete(resampler); }
};

/// Takes one channel at any rate, block by block.
class Resampler
{
public:
    explicit Resampler(double inputRate)
        : m_ratio(kTempoSampleRate / inputRate)
    {
        // Its next better quality moves no tempo, and the next lower one lets through what lies above the new rate.
        const soxr_quality_spec_t quality = soxr_quality_spec(SOXR_LQ, 0);
        const soxr_io_spec_t floats = soxr_io_spec(SOXR_FLOAT32_I, SOXR_FLOAT32_I);
        const soxr_runtime_spec_t oneThread = soxr_runtime_spec(1);
        m_resampler.reset(soxr_create(inputRate, kTempoSampleRate, 1, nullptr, &floats, &quality, &oneThread));
    }
    bool isReady() const { return m_resampler != nullptr; }

    bool add(std::span<const float> input) { return process(input.data(), input.size()); }
    /// After the last block.
    bool finish() { return process(nullptr, 0); }
    std::vector<float> take() { return std::move(m_output); }

private:
    bool process(const float *input, std::size_t count)
    {
        // What the filter has held back may come along.
        constexpr std::size_t kSlack = 4096;
        while (true) {
            const std::size_t done = m_output.size();
            const std::size_t room = static_cast<std::size_t>(double(count) * m_ratio) + kSlack;
            m_output.resize(done + room);
            std::size_t taken = 0;
            std::size_t made = 0;
            if (soxr_process(m_resampler.get(), input, count, &taken, m_output.data() + done, room, &made))
                return false;
            m_output.resize(done + made);
            if (input && taken == count)
                return true;
            if (taken == 0 && made == 0)
                return !input;
            count -= taken;
            if (input)
                input += taken;
        }
    }

    double m_ratio;
    std::unique_ptr<soxr, DeleteResampler> m_resampler;
    std::vector<float> m_output;
};

/// Each frame's average, written over the first of them. A file can hold what is no number, which would spread.
std::span<const float> averaged(std::span<float> samples, std::size_t channels)
{
    const std::size_t frames = samples.size() / channels;
    const float part = 1.0F / static_cast<float>(channels);
    for (std::size_t frame = 0; frame < frames; ++frame) {
        float sum = 0;
        for (std::size_t channel = 0; channel < channels; ++channel)
            sum += samples[frame * channels + channel];
        samples[frame] = std::isfinite(sum) ? sum * part : 0;
    }
    return samples.first(frames);
}

} // namespace

std::optional<std::vector<float>> monoSamples(AudioStream &stream)
{
    const Excerpt excerpt = excerptOf(stream);
    Resampler resampler(stream.format().sampleRate);
    if (excerpt.count == 0 || !resampler.isReady() || !stream.seek(excerpt.start))
        return std::nullopt;
    const auto channels = static_cast<std::size_t>(stream.format().channels);
    std::vector<float> block(kBlock / channels * channels);
    auto left = static_cast<std::size_t>(excerpt.count);
    while (left > 0) {
        const std::size_t wanted = std::min(left, block.size() / channels);
        const std::size_t frames = stream.read(std::span(block).first(wanted * channels));
        if (frames == 0)
            break;
        if (!resampler.add(averaged(std::span(block).first(frames * channels), channels)))
            return std::nullopt;
        left -= frames;
    }
    if (!resampler.finish())
        return std::nullopt;
    std::vector<float> samples = resampler.take();
    return samples.empty() ? std::nullopt : std::optional(std::move(samples));
}

} // namespace ostrelle
