#pragma once

#include "records/SampledColor.h"

#include <QColor>

#include <algorithm>

namespace ostrelle {

/// What can be shown of the colour, opaque.
inline QColor paintColor(const SampledColor &color)
{
    const auto shown = [](double component) { return static_cast<float>(std::clamp(component, 0.0, 1.0)); };
    return QColor::fromRgbF(shown(color.r), shown(color.g), shown(color.b));
}

/// Black or white: what is read on it.
inline QColor readableOn(const SampledColor &color)
{
    constexpr double kBright = 0.6;
    const double luminance = 0.2126 * color.r + 0.7152 * color.g + 0.0722 * color.b;
    return luminance > kBright ? Qt::black : Qt::white;
}

} // namespace ostrelle
