#pragma once

#include <optional>
#include <string_view>

namespace ostrelle {

/// A tempo that a tag states as a number, when it is above 0 and at most 400.
std::optional<double> tempoFromNumber(double value);
/// The same from a text that is nothing but one decimal number, with a point, and white space around it.
std::optional<double> tempoFromText(std::string_view text);

} // namespace ostrelle
