#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace ostrelle {

/// The description that an ICC profile (version 2 or 4) gives of itself, in English where it has that, else in its
/// first language; UTF-8. Empty when there is none, or no sound profile.
std::string profileName(const std::vector<std::uint8_t> &icc);

} // namespace ostrelle
