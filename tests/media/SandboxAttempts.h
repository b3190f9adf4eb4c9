#pragma once

#include <array>

namespace ostrelle {

/// The error numbers of what no file must be able to make a helper do, each tried; 0 for what was possible.
using AttemptErrors = std::array<int, 17>;
AttemptErrors attemptEverything();

} // namespace ostrelle
