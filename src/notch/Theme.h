#pragma once

#include <QBrush>
#include <QColor>
#include <QFont>

namespace ostrelle {

/// The appearance that something is painted in.
enum class ColorScheme { Dark, Light };

/// Increased when the desktop asks for more contrast.
enum class Contrast { Normal, Increased };

/// The steps of the type scale: 14 semibold, 12.5, 12.5 medium, 11, 11 medium, 10 medium, 10 semibold in spaced
/// capitals, 12 medium monospaced, 15 medium monospaced (logical pixels).
enum class FontRole { Title, Body, BodyMedium, Caption, CaptionMedium, Micro, SectionLabel, Mono, MonoLarge };

/// Colours, tokens and fonts that everything in the notch is painted with.
namespace Theme {

namespace detail {
constexpr QColor unit(double red, double green, double blue, double alpha = 1)
{
    const auto channel = [](double value) { return static_cast<ushort>(value * 65535 + 0.5); };
    return QColor(QColor::Rgb, channel(alpha), channel(red), channel(green), channel(blue));
}
} // namespace detail

inline constexpr QColor kPink = detail::unit(0.953, 0.298, 0.635);
inline constexpr QColor kMagenta = detail::unit(0.894, 0.243, 0.667);
inline constexpr QColor kPurple = detail::unit(0.608, 0.267, 0.816);
inline constexpr QColor kBlue = detail::unit(0, 0.69, 0.949);
inline constexpr QColor kCyan = detail::unit(0, 0.804, 0.988);
/// The black of the closed notch, where it is drawn and does not have to pass for the bezel.
inline constexpr QColor kHardware = detail::unit(0.031, 0.027, 0.039);
inline constexpr QColor kAccentVivid = kMagenta;

/// Pink, purple, blue.
QGradientStops accentGradient();
/// Pink, magenta, purple, blue, cyan.
QGradientStops accentSeam();

/// What differs between the appearances. Opacity is part of each colour.
struct Palette
{
    QColor text1;            ///< titles and values
    QColor text2;            ///< captions and idle glyphs
    QColor text3;            ///< labels and hints
    QColor tileTint;         ///< tiles, rows, wells and chips at rest
    QColor hoverTint;        ///< under the pointer, selected, active
    QColor plateEdge;        ///< half a pixel inside the top edge of a plate
    QColor hairline;         ///< separators, half a pixel high
    QColor red;              ///< a destructive glyph under the pointer
    QColor redText;          ///< "Missing"
    QColor orange;           ///< a warning in words
    QColor accent;           ///< badges, dots, caret
    QColor focusRing;        ///< around what has the keyboard focus, after a key moved it
    QColor textSelection;    ///< behind selected text
    QColor accentEdge;       ///< border of a focused field and of a well under a drag
    QColor accentWell;       ///< fill of a well under a drag
    QColor accentSwitchedOn; ///< fill of a soft button that is on
    QColor wellEdge;         ///< dashed border of a well at rest
    QColor dotRing;          ///< around a dot on a tile
    QColor swatchEdge;       ///< inside the edge of a colour
    QColor swatchRing;       ///< around the colour on display
    QColor surfaceTone;      ///< opaque stand-in for the glass, where a gap must look cut out of something
};

const Palette &palette(ColorScheme scheme, Contrast contrast = Contrast::Normal);

/// The font of one step of the type scale, in logical pixels on screens of any resolution: Inter or the desktop's font,
/// JetBrains Mono or the desktop's monospaced one. Main thread.
QFont font(FontRole role);

/// The same families at any size, for the windows, whose scale is finer.
QFont interfaceFont(double pixels, QFont::Weight weight);
/// Medium.
QFont monospacedFont(double pixels);

} // namespace Theme
} // namespace ostrelle
