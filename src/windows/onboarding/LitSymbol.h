#pragma once

#include "notch/Glyph.h"

#include <QBrush>
#include <QColor>
#include <QPixmap>
#include <QStringView>

namespace ostrelle {

/// A large symbol in a gradient from left to right, with a glow around it.
struct LitSymbol
{
    QStringView symbol;
    double size = 54;
    GlyphWeight weight = GlyphWeight::Light;
    QGradientStops sweep = {};
    QColor glow = {};
    double glowRadius = 9;

    /// The side of the picture, logical pixels; the symbol is in its middle.
    double side() const;
    QPixmap picture(double devicePixelRatio) const;
};

} // namespace ostrelle
