#include "records/SampledColor.h"

#include <algorithm>
#include <cmath>

namespace ostrelle {
namespace {

/// Half away from zero.
int rounded(double value)
{
    return static_cast<int>(std::lround(value));
}

} // namespace

SampledColor::Rgb255 SampledColor::rgb255() const
{
    return {rounded(r * 255), rounded(g * 255), rounded(b * 255)};
}

SampledColor::Hsl SampledColor::hsl() const
{
    const double most = std::max({r, g, b});
    const double least = std::min({r, g, b});
    const double lightness = (most + least) / 2;
    if (most == least)
        return {0, 0, lightness};
    const double span = most - least;
    const double saturation = span / (lightness > 0.5 ? 2 - most - least : most + least);
    double sixths = (r - g) / span + 4;
    if (r == most)
        sixths = (g - b) / span + (g < b ? 6 : 0);
    else if (g == most)
        sixths = (b - r) / span + 2;
    return {60 * sixths, saturation, lightness};
}

QString SampledColor::hexString() const
{
    const auto [red, green, blue] = rgb255();
    return QString::asprintf("#%02X%02X%02X", red, green, blue);
}

QString SampledColor::rgbString() const
{
    const auto [red, green, blue] = rgb255();
    return QStringLiteral("%1, %2, %3").arg(red).arg(green).arg(blue);
}

QString SampledColor::hslString() const
{
    const auto [hue, saturation, lightness] = hsl();
    return QStringLiteral("%1°, %2%, %3%")
        .arg(rounded(hue))
        .arg(rounded(saturation * 100))
        .arg(rounded(lightness * 100));
}

std::optional<SampledColor> SampledColor::fromJson(const QJsonObject &record)
{
    const auto component = [&](QStringView name) { return record[name].toDouble(std::nan("")); };
    const SampledColor color{component(u"r"), component(u"g"), component(u"b")};
    if (!std::isfinite(color.r) || !std::isfinite(color.g) || !std::isfinite(color.b))
        return std::nullopt;
    return color;
}

QJsonObject toJson(const SampledColor &color)
{
    return {{QStringLiteral("r"), color.r}, {QStringLiteral("g"), color.g}, {QStringLiteral("b"), color.b}};
}

} // namespace ostrelle
