#pragma once

#include <cstdint>
#include <optional>
#include <span>

namespace ostrelle {

/// What comes out of an AAC decoder that was set up so.
struct AacConfiguration
{
    unsigned sampleRate = 0;
    unsigned channels = 0;
};

/// Reads an AudioSpecificConfig (ISO/IEC 14496-3, 1.6.2.1). Nothing when it is of another codec, or describes its
/// channels one by one.
std::optional<AacConfiguration> readAacConfiguration(std::span<const std::uint8_t> bytes);

} // namespace ostrelle
