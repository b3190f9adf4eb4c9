#pragma once

#include "notch/Theme.h"

#include <QColor>

namespace ostrelle {

class NotchAppearance;

/// What the first run is painted with beside the colours of all windows. Opacity is part of each colour.
struct OnboardingColors
{
    QColor ground; ///< over a blurred desktop; opaque where nothing blurs
    QColor rimTop; ///< inside the outline
    QColor rim;
    QColor rimOutside;
    QColor shadow;
    QColor footer;
    QColor card;
    QColor cardTopEdge;
    QColor cardOutline;
    QColor key;              ///< a key cap
    QColor keyOutline;       ///< clear where the cap is lighter than the card anyway
    QColor keyBottom;        ///< the cap's lower edge
    double glowStrength = 1; ///< of the theme's light from the top edge, in shares of its corner opacity
    double markGlow = 0;     ///< around the program's mark

    static const OnboardingColors &of(ColorScheme scheme, Contrast contrast);
    static const OnboardingColors &of(const NotchAppearance &appearance);
};

} // namespace ostrelle
