#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace ostrelle {

using FactValue = std::variant<bool, std::int64_t, double, std::string>;
using FactFields = std::vector<std::pair<std::string, FactValue>>;

/// An object of these fields as JSON text in UTF-8. What is no UTF-8 in a text is replaced; numbers that are not finite
/// are left out.
std::vector<std::uint8_t> factsJson(const FactFields &fields);

} // namespace ostrelle
