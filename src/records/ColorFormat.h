#pragma once

#include "records/SampledColor.h"

#include <QString>

#include <optional>

namespace ostrelle {

/// How a command prints a colour.
enum class ColorFormat { Hex, Rgb, Hsl, Json };

/// "hex", "rgb", "hsl" or "json".
std::optional<ColorFormat> colorFormatFromName(const QString &name);
/// One line, without a line feed. JSON has the components as they were sampled, and "hex".
QString colorText(const SampledColor &color, ColorFormat format);

} // namespace ostrelle
