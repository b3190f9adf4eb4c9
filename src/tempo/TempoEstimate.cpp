#include "tempo/TempoEstimate.h"

#include "tempo/Autocorrelation.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <limits>
#include <numeric>
#include <vector>

namespace ostrelle {
namespace {

constexpr std::size_t kMostTooFewSamples = 44'100;

/// In values of an envelope: the fastest tempo that is looked for, 199 a minute, and the slowest, 60 a minute.
constexpr std::size_t kShortestLag = 26;
constexpr std::size_t kLongestLag = 86;
constexpr std::size_t kFewestValues = 54;
constexpr double kValuesPerMinute = 60.0 * kTempoSampleRate / kOnsetHop;

/// How much the best score must exceed the mean one: noise has peaks as well.
constexpr double kProminence = 1.35;

/// Where else the beat may be when the whole spectrum follows the off-beats.
constexpr std::array kRelatedLags{2.0 / 3, 3.0 / 4, 1.0, 4.0 / 3, 3.0 / 2};
constexpr double kBonusOfSameLag = 1.12;

constexpr double kLowestTempo = 60;
constexpr double kHighestTempo = 200;
constexpr double kDoubledBelow = 78;
constexpr double kHalvedAbove = 180;
constexpr int kMostFoldsUp = 3;
constexpr int kMostFolds = 6;
constexpr double kWholeWithin = 0.25;

/// A beat comes back after two, three and four of its lags as well.
double harmonicScore(std::span<const double> correlation, std::size_t lag)
{
    const auto has = [&](std::size_t multiple) { return multiple * lag < correlation.size(); };
    double score = correlation[lag];
    if (has(2))
        score += 0.5 * correlation[2 * lag];
    if (has(3))
        score += correlation[3 * lag] / 3;
    if (has(4))
        score += 0.25 * correlation[4 * lag];
    return score;
}

/// The related lag at which the low band beats most; `lag` when there is none within the range.
double checkedAgainst(std::span<const double> low, double lag, std::size_t longestLag)
{
    double chosen = lag;
    double bestScore = -std::numeric_limits<double>::infinity();
    for (const double factor : kRelatedLags) {
        const double nearest = std::round(lag * factor);
        if (nearest < double(kShortestLag) || nearest > double(longestLag))
            continue;
        double score = harmonicScore(low, static_cast<std::size_t>(nearest));
        if (factor == 1)
            score *= kBonusOfSameLag;
        if (score > bestScore) {
            bestScore = score;
            chosen = lag * factor;
        }
    }
    return chosen;
}

/// Up to `longestLag`; what is shorter than kShortestLag scores 0.
std::vector<double> scoresByLag(std::span<const double> correlation, std::size_t longestLag)
{
    std::vector<double> scores(longestLag + 1);
    for (std::size_t lag = kShortestLag; lag <= longestLag; ++lag)
        scores[lag] = harmonicScore(correlation, lag);
    return scores;
}

} // namespace

std::optional<double> estimateTempo(std::span<const float> samples)
{
    if (samples.size() <= kMostTooFewSamples)
        return std::nullopt;
    const std::optional<OnsetEnvelopes> envelopes = onsetEnvelopes(samples);
    return envelopes ? tempoFrom(*envelopes) : std::nullopt;
}

std::optional<double> tempoFrom(const OnsetEnvelopes &envelopes)
{
    const std::size_t count = envelopes.full.size();
    if (count < kFewestValues)
        return std::nullopt;
    const std::size_t longestLag = std::min(count / 2, kLongestLag);
    const std::size_t maxLag = std::min(count - 8, 4 * longestLag);
    const auto full = autocorrelation(envelopes.full, maxLag);
    if (!full)
        return std::nullopt;
    const std::vector<double> scores = scoresByLag(*full, longestLag);
    const auto begin = scores.begin() + kShortestLag;
    const auto peak = std::max_element(begin, scores.end());
    const double mean = std::accumulate(begin, scores.end(), 0.0) / double(std::distance(begin, scores.end()));
    if (!(*peak > 0) || !(mean * kProminence < *peak))
        return std::nullopt;
    double lag = refine(scores, static_cast<std::size_t>(std::distance(scores.begin(), peak)));
    if (const auto low = autocorrelation(envelopes.low, maxLag))
        lag = checkedAgainst(*low, lag, longestLag);
    return foldedTempo(kValuesPerMinute / lag);
}

double refine(std::span<const double> scores, std::size_t index)
{
    const auto place = double(index);
    if (index < 1 || index + 1 >= scores.size())
        return place;
    const double before = scores[index - 1];
    const double at = scores[index];
    const double after = scores[index + 1];
    const double bend = before - 2 * at + after;
    if (bend == 0)
        return place;
    const double shift = (before - after) * 0.5 / bend;
    return std::abs(shift) <= 1 ? place + shift : place;
}

std::optional<double> foldedTempo(double bpm)
{
    int folds = 0;
    for (; bpm < kDoubledBelow && bpm * 2 <= kHighestTempo && folds < kMostFoldsUp; ++folds)
        bpm *= 2;
    for (; bpm > kHalvedAbove && bpm * 0.5 >= kLowestTempo && folds < kMostFolds; ++folds)
        bpm *= 0.5;
    if (!(bpm >= kLowestTempo && bpm <= kHighestTempo))
        return std::nullopt;
    const double whole = std::round(bpm);
    return std::abs(bpm - whole) < kWholeWithin ? whole : std::round(bpm * 10) / 10;
}

} // namespace ostrelle
