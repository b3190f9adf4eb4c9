#include "notch/Gaussian.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace ostrelle {
namespace {

constexpr float kTableReach = 4;
constexpr float kTableStepsPerUnit = 64;
constexpr std::size_t kTableSize = 2 * 4 * 64 + 1;

std::array<float, kTableSize> makeTable()
{
    std::array<float, kTableSize> table{};
    for (std::size_t i = 0; i < kTableSize; ++i)
        table[i] = static_cast<float>(
            gaussianIntegral(static_cast<double>(i) / static_cast<double>(kTableStepsPerUnit) - kTableReach));
    table.front() = 0;
    table.back() = 1;
    return table;
}

} // namespace

double gaussianIntegral(double x)
{
    return 0.5 * std::erfc(-x / std::numbers::sqrt2);
}

float quickGaussianIntegral(float x)
{
    static const std::array<float, kTableSize> table = makeTable();
    const float position = (std::clamp(x, -kTableReach, kTableReach) + kTableReach) * kTableStepsPerUnit;
    const auto index = std::min(static_cast<std::size_t>(position), kTableSize - 2);
    const float part = position - static_cast<float>(index);
    return table[index] + (table[index + 1] - table[index]) * part;
}

double gaussianDensity(double x, double deviation)
{
    constexpr double kSeen = 4.8;
    const double normal = x / deviation;
    if (std::abs(normal) > kSeen)
        return 0;
    return std::exp(-0.5 * normal * normal) / (deviation * std::sqrt(2 * std::numbers::pi));
}

double blurredBar(double x, double from, double to, double deviation)
{
    return gaussianIntegral((x - from) / deviation) - gaussianIntegral((x - to) / deviation);
}

float quickBlurredBar(double x, double from, double to, double deviation)
{
    return quickGaussianIntegral(static_cast<float>((x - from) / deviation)) -
           quickGaussianIntegral(static_cast<float>((x - to) / deviation));
}

} // namespace ostrelle
