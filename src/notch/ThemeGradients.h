#pragma once

#include "notch/Theme.h"
#include "records/NotchTheme.h"

#include <QBrush>
#include <QColor>

#include <span>

namespace ostrelle {

/// The theme's colours in gradient order, evenly spaced. Frost is darker in the light appearance, where its pale stops
/// would not show.
std::span<const QColor> themeColors(NotchTheme theme, ColorScheme scheme);

/// The single colour of the theme's glows.
QColor themeGlow(NotchTheme theme, ColorScheme scheme);

/// How strongly the gradient pools in the corner, 0 to 1.
double cornerOpacity(NotchTheme theme, ColorScheme scheme);

/// The colours as evenly spaced stops.
QGradientStops themeStops(NotchTheme theme, ColorScheme scheme);

/// The colours between one clear stop at each end, all evenly spaced, so that a seam fades in and out.
QGradientStops seamStops(NotchTheme theme, ColorScheme scheme);

/// Centre of the radial mask of pool and rim, in units of the surface's size: just outside the bottom left corner.
inline constexpr double kFalloffCentreX = -0.02;
inline constexpr double kFalloffCentreY = 1.04;

/// The radial mask: 1 at its centre, 0.45 at 45 % of the reach, 0 from the reach on. The reach is at least 1.
double cornerFalloff(double distance, double reach);

} // namespace ostrelle
