#pragma once

#include "files/AudioPreview.h"

#include <algorithm>
#include <optional>

namespace ostrelle {

/// How much of what is being played was heard, 0 to 1; nothing while its length is unknown.
inline std::optional<double> playedPart(const AudioPreview &preview)
{
    const double length = preview.length();
    return length > 0 ? std::optional(std::clamp(preview.position() / length, 0.0, 1.0)) : std::nullopt;
}

} // namespace ostrelle
