#include "tempo/Autocorrelation.h"

#include <algorithm>
#include <array>
#include <numeric>

namespace ostrelle {
namespace {

/// Lags that are summed side by side. Each sum by itself must wait for its last addition; together they fill the vector
/// unit, and none changes its order.
constexpr std::size_t kLanes = 8;
constexpr std::size_t kFewestBeyond = 8;

} // namespace

std::optional<std::vector<double>> autocorrelation(std::span<const float> values, std::size_t maxLag)
{
    const std::size_t count = values.size();
    if (maxLag + kFewestBeyond >= count)
        return std::nullopt;
    const double mean = double(std::accumulate(values.begin(), values.end(), 0.0F)) / double(count);
    // The zeros behind add nothing to the sums of a group's longer lags, which run out of values first.
    std::vector<double> centred(count + kLanes);
    std::transform(values.begin(), values.end(), centred.begin(), [mean](float value) { return double(value) - mean; });
    if (std::all_of(centred.begin(), centred.end(), [](double value) { return value == 0; }))
        return std::nullopt;

    std::vector<double> result(maxLag + 1);
    for (std::size_t first = 1; first <= maxLag; first += kLanes) {
        std::array<double, kLanes> sums{};
        for (std::size_t i = 0; i + first < count; ++i) {
            for (std::size_t lane = 0; lane < kLanes; ++lane)
                sums[lane] += centred[i] * centred[i + first + lane];
        }
        for (std::size_t lag = first; lag < first + kLanes && lag <= maxLag; ++lag)
            result[lag] = sums[lag - first] / double(count - lag);
    }
    return result;
}

} // namespace ostrelle
