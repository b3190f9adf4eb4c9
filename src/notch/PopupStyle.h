#pragma once

#include "notch/NotchAppearance.h"

#include <QString>

namespace ostrelle {

/// The style sheet of a menu of the notch.
QString menuStyleSheet(const NotchAppearance &appearance);

/// Gives all tooltips of the program the notch's looks. Call again when the appearance changed.
void applyToolTipStyle(const NotchAppearance &appearance);

} // namespace ostrelle
