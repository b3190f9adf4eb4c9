#pragma once

#include <QJsonObject>
#include <QString>

#include <optional>

namespace ostrelle {

/// A colour in sRGB, components 0 ... 1 as they were sampled: neither rounded nor clamped. Its text forms are made of
/// components times 255, degrees and percents rounded half away from zero.
struct SampledColor
{
    struct Rgb255
    {
        int red = 0;
        int green = 0;
        int blue = 0;
        friend bool operator==(const Rgb255 &, const Rgb255 &) = default;
    };
    struct Hsl
    {
        double hueDegrees = 0;
        double saturation = 0; ///< 0 ... 1
        double lightness = 0;  ///< 0 ... 1
        friend bool operator==(const Hsl &, const Hsl &) = default;
    };

    double r = 0;
    double g = 0;
    double b = 0;

    /// Colours that look the same may differ; they have one id.
    QString id() const { return hexString(); }
    Rgb255 rgb255() const;
    Hsl hsl() const;
    QString hexString() const; ///< "#FF8000"
    QString rgbString() const; ///< "255, 128, 0"
    QString hslString() const; ///< "30°, 100%, 50%"

    /// The inverse of toJson(); nothing when a component is missing or no finite number.
    static std::optional<SampledColor> fromJson(const QJsonObject &record);

    friend bool operator==(const SampledColor &, const SampledColor &) = default;
};

/// As it is stored.
QJsonObject toJson(const SampledColor &color);

} // namespace ostrelle
