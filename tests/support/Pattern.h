#pragma once

#include <cstddef>
#include <vector>

namespace ostrelle {

/// Numbers from -1 to 1, the same in every run.
std::vector<float> noise(std::size_t count, unsigned seed = 1);

/// A rhythm as mono samples at kTempoSampleRate. Times are in beats from its begin.
class Pattern
{
public:
    Pattern(double bpm, double seconds);

    /// The tempo rises or falls evenly to this one at the end. Before the first sound.
    void driftTo(double bpm) { m_lastBpm = bpm; }
    double beats() const;

    void addClick(double beat, float level = 1);
    void addKick(double beat, float level = 1);
    void addSnare(double beat, float level = 1);
    void addHat(double beat, float level = 1);
    void addNoise(float level);

    const std::vector<float> &samples() const { return m_samples; }

private:
    void add(double beat, const std::vector<float> &sound, float level);

    double m_firstBpm;
    double m_lastBpm;
    double m_seconds;
    std::vector<float> m_samples;
};

} // namespace ostrelle
