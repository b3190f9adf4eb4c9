#pragma once

#include "notch/Theme.h"

#include <QColor>

namespace ostrelle {

class NotchAppearance;

/// What the ordinary windows are painted with, beside the tokens of the notch. Opacity is part of each colour.
struct WindowColors
{
    QColor page;    ///< opaque
    QColor sidebar; ///< opaque
    QColor card;
    QColor cardTopEdge; ///< clear where the card has an outline instead
    QColor cardOutline;
    QColor cardShadow;
    QColor text1; ///< titles
    QColor text2; ///< subtitles and footers
    QColor text3; ///< idle glyphs
    QColor sectionLabel;
    QColor hairline;
    QColor control; ///< pickers, buttons and the recorder at rest
    QColor controlHover;
    QColor track;  ///< behind segments
    QColor hover;  ///< rows and swatches under the pointer
    QColor chosen; ///< the chosen row
    QColor segment;
    QColor switchOff;
    QColor switchOffHover;
    QColor switchOn;
    QColor switchOnHover;
    QColor accentInk;
    QColor dangerInk;
    QColor danger;
    QColor dangerHover;
    QColor warningInk;
    QColor warningDot;
    QColor menu; ///< opaque
    QColor menuOutline;
    QColor lifted; ///< a row under a drag, opaque
    QColor scrim;  ///< over the window behind an alert
    QColor scrollThumb;

    static const WindowColors &of(ColorScheme scheme, Contrast contrast);
    static const WindowColors &of(const NotchAppearance &appearance);
};

} // namespace ostrelle
