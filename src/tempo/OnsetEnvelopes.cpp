#include "tempo/OnsetEnvelopes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <memory>
#include <numbers>

#include <kiss_fftr.h>

namespace ostrelle {
namespace {

constexpr std::size_t kFrameSize = 512;
constexpr std::size_t kBins = kFrameSize / 2;
constexpr std::size_t kLowBins = 9;
constexpr std::size_t kFewestFrames = 33;
constexpr std::size_t kLocalMeanWindow = 30;

using Frame = std::array<float, kFrameSize>;
using Magnitudes = std::array<float, kBins>;

struct FreeTransform
{
    void operator()(kiss_fftr_cfg transform) const { kiss_fftr_free(transform); }
};

Frame periodicHann()
{
    Frame window{};
    for (std::size_t k = 0; k < kFrameSize; ++k)
        window[k] = static_cast<float>(0.5 * (1 - std::cos(2 * std::numbers::pi * double(k) / double(kFrameSize))));
    return window;
}

/// The magnitudes of a real signal's spectrum, frame by frame.
class Spectrum
{
public:
    Spectrum()
        : m_transform(kiss_fftr_alloc(static_cast<int>(kFrameSize), 0, nullptr, nullptr))
    {
    }
    bool isReady() const { return m_transform != nullptr; }

    /// `samples` are kFrameSize. The first bin holds the constant part and the highest frequency together.
    void measure(std::span<const float> samples, Magnitudes &magnitudes)
    {
        Frame frame;
        for (std::size_t k = 0; k < kFrameSize; ++k)
            frame[k] = samples[k] * m_window[k];
        kiss_fftr(m_transform.get(), frame.data(), m_bins.data());
        m_bins[0].i = m_bins[kBins].r;
        for (std::size_t b = 0; b < kBins; ++b)
            magnitudes[b] = std::sqrt(m_bins[b].r * m_bins[b].r + m_bins[b].i * m_bins[b].i);
    }

private:
    std::unique_ptr<kiss_fftr_state, FreeTransform> m_transform;
    const Frame m_window = periodicHann();
    std::array<kiss_fft_cpx, kBins + 1> m_bins{};
};

} // namespace

std::optional<OnsetEnvelopes> onsetEnvelopes(std::span<const float> samples)
{
    Spectrum spectrum;
    if (!spectrum.isReady())
        return std::nullopt;
    OnsetEnvelopes flux;
    Magnitudes previous{};
    Magnitudes current{};
    Magnitudes gains{};
    for (std::size_t start = 0; start + kFrameSize <= samples.size(); start += std::size_t(kOnsetHop)) {
        spectrum.measure(samples.subspan(start, kFrameSize), current);
        for (std::size_t b = 0; b < kBins; ++b)
            gains[b] = std::max(0.0F, current[b] - previous[b]);
        float sum = 0;
        for (std::size_t b = 0; b < kLowBins; ++b)
            sum += gains[b];
        flux.low.push_back(sum);
        for (std::size_t b = kLowBins; b < kBins; ++b)
            sum += gains[b];
        flux.full.push_back(sum);
        previous = current;
    }
    if (flux.full.size() < kFewestFrames)
        return std::nullopt;
    return OnsetEnvelopes{rectifyAgainstLocalMean(flux.full), rectifyAgainstLocalMean(flux.low)};
}

std::vector<float> rectifyAgainstLocalMean(std::span<const float> values)
{
    std::vector<float> result(values.size());
    float sum = 0;
    for (std::size_t i = 0; i < values.size(); ++i) {
        sum += values[i];
        if (i >= kLocalMeanWindow)
            sum -= values[i - kLocalMeanWindow];
        const std::size_t count = std::min(i + 1, kLocalMeanWindow);
        result[i] = std::max(0.0F, values[i] - sum / static_cast<float>(count));
    }
    return result;
}

} // namespace ostrelle
