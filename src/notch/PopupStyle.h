#pragma once

#include "notch/NotchAppearance.h"

#include <QBitmap>
#include <QColor>
#include <QString>

namespace ostrelle {

/// The style sheet of a menu of the notch, all but the colours of its texts, which a style sheet would fix for good.
QString menuStyleSheet(const NotchAppearance &appearance);
/// Opaque, for QPalette::ButtonText.
QColor menuTextColor(const NotchAppearance &appearance);
/// The same of an entry that takes something away.
QColor menuWarningColor(const NotchAppearance &appearance);

/// The shape of a popup with round corners. A mask and not translucency: it looks the same without a compositor.
QBitmap roundedMask(const QSize &size, double radius);

/// Gives all tooltips of the program the notch's looks. Call again when the appearance changed.
void applyToolTipStyle(const NotchAppearance &appearance);

} // namespace ostrelle
