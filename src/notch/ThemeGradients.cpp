#include "notch/ThemeGradients.h"

#include <algorithm>
#include <array>

namespace ostrelle {
namespace {

using Theme::detail::unit;

constexpr std::array kSpectrum = {Theme::kPink, Theme::kMagenta, Theme::kPurple, Theme::kBlue, Theme::kCyan};
constexpr std::array kSunset = {unit(1, 0.702, 0.278), unit(1, 0.42, 0.42), Theme::kPink, Theme::kPurple};
constexpr std::array kAurora = {unit(0, 0.898, 0.627), Theme::kCyan, Theme::kBlue, unit(0.424, 0.388, 1)};
constexpr std::array kEmber = {unit(1, 0.82, 0.4), unit(1, 0.541, 0.239), unit(0.949, 0.329, 0.176),
                               unit(0.757, 0.071, 0.122)};
constexpr std::array kUltraviolet = {unit(0.478, 0.361, 1), unit(0.659, 0.333, 0.969), Theme::kMagenta,
                                     unit(0.357, 0.169, 0.851)};
constexpr std::array kFrost = {unit(0.667, 0.729, 0.796), unit(0.878, 0.925, 0.965), unit(0.616, 0.796, 0.878),
                               unit(0.451, 0.529, 0.647)};
constexpr std::array kFrostOnLight = {unit(0.286, 0.361, 0.463), unit(0.451, 0.569, 0.663), unit(0.267, 0.412, 0.51),
                                      unit(0.18, 0.243, 0.337)};

constexpr QColor kFrostGlow = unit(0.741, 0.855, 0.925);

} // namespace

std::span<const QColor> themeColors(NotchTheme theme, ColorScheme scheme)
{
    switch (theme) {
    case NotchTheme::Spectrum:
        return kSpectrum;
    case NotchTheme::Sunset:
        return kSunset;
    case NotchTheme::Aurora:
        return kAurora;
    case NotchTheme::Ember:
        return kEmber;
    case NotchTheme::Ultraviolet:
        return kUltraviolet;
    case NotchTheme::Frost:
        break;
    }
    return scheme == ColorScheme::Light ? std::span<const QColor>(kFrostOnLight) : std::span<const QColor>(kFrost);
}

QColor themeGlow(NotchTheme theme, ColorScheme scheme)
{
    switch (theme) {
    case NotchTheme::Spectrum:
        return Theme::kMagenta;
    case NotchTheme::Sunset:
    case NotchTheme::Aurora:
    case NotchTheme::Ultraviolet:
        return themeColors(theme, scheme)[1];
    case NotchTheme::Ember:
        return unit(1, 0.451, 0.18);
    case NotchTheme::Frost:
        break;
    }
    return scheme == ColorScheme::Light ? kFrostOnLight[0] : kFrostGlow;
}

double cornerOpacity(NotchTheme theme, ColorScheme scheme)
{
    const bool light = scheme == ColorScheme::Light;
    switch (theme) {
    case NotchTheme::Spectrum:
    case NotchTheme::Sunset:
    case NotchTheme::Aurora:
        return light ? 0.14 : 0.26;
    case NotchTheme::Ember:
    case NotchTheme::Ultraviolet:
        return light ? 0.16 : 0.30;
    case NotchTheme::Frost:
        break;
    }
    return light ? 0.10 : 0.16;
}

QGradientStops themeStops(NotchTheme theme, ColorScheme scheme)
{
    const auto colors = themeColors(theme, scheme);
    QGradientStops stops;
    for (std::size_t i = 0; i < colors.size(); ++i)
        stops.append({static_cast<double>(i) / static_cast<double>(colors.size() - 1), colors[i]});
    return stops;
}

QGradientStops seamStops(NotchTheme theme, ColorScheme scheme)
{
    const auto colors = themeColors(theme, scheme);
    const auto intervals = static_cast<double>(colors.size() + 1);
    const auto clear = [](QColor color) {
        color.setAlpha(0);
        return color;
    };
    QGradientStops stops = {{0, clear(colors.front())}};
    for (std::size_t i = 0; i < colors.size(); ++i)
        stops.append({static_cast<double>(i + 1) / intervals, colors[i]});
    stops.append({1, clear(colors.back())});
    return stops;
}

double cornerFalloff(double distance, double reach)
{
    constexpr double kKnee = 0.45;
    const double part = std::max(distance, 0.0) / std::max(reach, 1.0);
    if (part <= kKnee)
        return 1 - part / kKnee * (1 - kKnee);
    return std::max(0.0, kKnee * (1 - part) / (1 - kKnee));
}

} // namespace ostrelle
