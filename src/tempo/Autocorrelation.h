#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

namespace ostrelle {

/// The autocorrelation of `values` about their mean, by lag from 0 to `maxLag`: the sum of the products divided by how
/// many there are. That of lag 0 is not computed, it is 0. Nothing when fewer than nine values lie beyond `maxLag`, or
/// all are equal. The mean is of a sum in single precision; all else is in double, each sum in the order of the values.
std::optional<std::vector<double>> autocorrelation(std::span<const float> values, std::size_t maxLag);

} // namespace ostrelle
