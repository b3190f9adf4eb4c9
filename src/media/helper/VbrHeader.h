#pragma once

#include <cstdint>
#include <optional>
#include <span>

namespace ostrelle {

/// What the first frame of an MP3 file may say of all that follow, instead of sound.
struct VbrHeader
{
    std::uint64_t frames = 0;
    std::uint64_t bytes = 0; ///< with this frame; 0 when it is not told
    /// Samples that the encoder put before and behind those that it was given.
    unsigned delay = 0;
    unsigned padding = 0;
};

/// Reads a "Xing", "Info" or "VBRI" header in a whole frame; nothing when there is none, or it counts no frames.
std::optional<VbrHeader> readVbrHeader(std::span<const std::uint8_t> frame);

} // namespace ostrelle
