#include "support/Pattern.h"

#include "tempo/OnsetEnvelopes.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>

namespace ostrelle {
namespace {

constexpr double kRate = kTempoSampleRate;

/// `sound` gives a sample for a time in seconds.
template <typename Sound>
std::vector<float> rendered(double seconds, Sound sound)
{
    std::vector<float> samples(static_cast<std::size_t>(seconds * kRate));
    for (std::size_t i = 0; i < samples.size(); ++i)
        samples[i] = static_cast<float>(sound(double(i) / kRate));
    return samples;
}

std::vector<float> fading(std::vector<float> samples, double decay)
{
    for (std::size_t i = 0; i < samples.size(); ++i)
        samples[i] *= static_cast<float>(std::exp(-decay * double(i) / kRate));
    return samples;
}

double sine(double hertz, double seconds)
{
    return std::sin(2 * std::numbers::pi * hertz * seconds);
}

} // namespace

std::vector<float> noise(std::size_t count, unsigned seed)
{
    std::mt19937 generator(seed);
    std::vector<float> samples(count);
    for (float &sample : samples)
        sample = static_cast<float>(double(generator()) / double(std::mt19937::max()) * 2 - 1);
    return samples;
}

Pattern::Pattern(double bpm, double seconds)
    : m_firstBpm(bpm)
    , m_lastBpm(bpm)
    , m_seconds(seconds)
    , m_samples(static_cast<std::size_t>(seconds * kRate))
{
}

double Pattern::beats() const
{
    return (m_firstBpm + m_lastBpm) / 2 * m_seconds / 60;
}

void Pattern::addClick(double beat, float level)
{
    add(beat, fading(rendered(0.02, [](double t) { return sine(1500, t); }), 150), level);
}

void Pattern::addKick(double beat, float level)
{
    const auto falling = [](double t) { return sine(50 + 30 * std::exp(-20 * t), t); };
    add(beat, fading(rendered(0.25, falling), 14), level);
}

void Pattern::addSnare(double beat, float level)
{
    add(beat, fading(noise(static_cast<std::size_t>(0.15 * kRate), 7), 30), level);
}

void Pattern::addHat(double beat, float level)
{
    // The difference of neighbours leaves the treble.
    std::vector<float> hiss = noise(static_cast<std::size_t>(0.05 * kRate), 9);
    std::adjacent_difference(hiss.begin(), hiss.end(), hiss.begin());
    add(beat, fading(std::move(hiss), 80), level * 0.5F);
}

void Pattern::addNoise(float level)
{
    const std::vector<float> hiss = noise(m_samples.size(), 21);
    for (std::size_t i = 0; i < hiss.size(); ++i)
        m_samples[i] += level * hiss[i];
}

void Pattern::add(double beat, const std::vector<float> &sound, float level)
{
    // The beats passed after t seconds are first * t / 60 + (last - first) * t^2 / (120 * length), solved for t.
    const double first = m_firstBpm / 60;
    const double rise = (m_lastBpm - m_firstBpm) / 60 / m_seconds;
    const double time = 2 * beat / (first + std::sqrt(first * first + 2 * rise * beat));
    const auto begin = static_cast<std::size_t>(std::lround(time * kRate));
    for (std::size_t i = 0; i < sound.size() && begin + i < m_samples.size(); ++i)
        m_samples[begin + i] += level * sound[i];
}

} // namespace ostrelle
