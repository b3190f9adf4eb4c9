#pragma once

#include "notch/NotchAppearance.h"

#include <QColor>
#include <QString>

namespace ostrelle {

/// The style sheet of a menu of the notch, all but the colours of its texts, which a style sheet would fix for good.
QString menuStyleSheet(const NotchAppearance &appearance);
/// Opaque, for QPalette::ButtonText.
QColor menuTextColor(const NotchAppearance &appearance);
/// The same of an entry that takes something away.
QColor menuWarningColor(const NotchAppearance &appearance);

/// Gives all tooltips of the program the notch's looks. Call again when the appearance changed.
void applyToolTipStyle(const NotchAppearance &appearance);

} // namespace ostrelle
