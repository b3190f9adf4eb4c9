#pragma once

#include "records/SampledColor.h"

#include <QString>

#include <array>

namespace ostrelle {

/// The text forms of a colour, in the order of the rows.
enum class ColorForm { Hex, Rgb, Hsl };

inline constexpr std::array kAllColorForms{ColorForm::Hex, ColorForm::Rgb, ColorForm::Hsl};

inline QString colorFormLabel(ColorForm form)
{
    return form == ColorForm::Hex   ? QStringLiteral("HEX")
           : form == ColorForm::Rgb ? QStringLiteral("RGB")
                                    : QStringLiteral("HSL");
}

inline QString colorText(const SampledColor &color, ColorForm form)
{
    return form == ColorForm::Hex ? color.hexString() : form == ColorForm::Rgb ? color.rgbString() : color.hslString();
}

} // namespace ostrelle
