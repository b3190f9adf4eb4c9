#pragma once

#include <variant>

namespace ostrelle {

/// The small live marker of a tile.
struct CountBadge
{
    int count = 0;
    friend bool operator==(const CountBadge &, const CountBadge &) = default;
};

/// A filled dot in an sRGB colour, components 0 ... 1, opaque.
struct DotBadge
{
    double red = 0;
    double green = 0;
    double blue = 0;
    friend bool operator==(const DotBadge &, const DotBadge &) = default;
};

using ModuleBadge = std::variant<CountBadge, DotBadge>;

} // namespace ostrelle
