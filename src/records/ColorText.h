#pragma once

#include "records/SampledColor.h"

#include <QStringView>

#include <optional>

namespace ostrelle {

/// The colour that somebody typed or copied elsewhere: "#F80" and "#FF8000" (with six digits also without the mark),
/// "rgb(255 128 0)" and "hsl(30 100% 50%)" with spaces or commas and in any case, and the three forms that SampledColor
/// writes. Components of rgb() may be percents. Nothing when it is none of these, when a number is out of its range, or
/// when there is an opacity.
std::optional<SampledColor> colorFromText(QStringView text);

} // namespace ostrelle
