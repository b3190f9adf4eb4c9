#include "notch/Theme.h"

#include "platform/DesktopFonts.h"

#include <cmath>

namespace ostrelle::Theme {
namespace {

using detail::unit;

constexpr QColor white(double opacity)
{
    return unit(1, 1, 1, opacity);
}

constexpr QColor black(double opacity)
{
    return unit(0, 0, 0, opacity);
}

constexpr QColor eightBit(int red, int green, int blue, double opacity = 1)
{
    return unit(red / 255.0, green / 255.0, blue / 255.0, opacity);
}

constexpr QColor accent(double opacity)
{
    return unit(0.894, 0.243, 0.667, opacity);
}

constexpr double kGlyphRed = 0.9;
constexpr double kWarningText = 0.75;

Palette makePalette(ColorScheme scheme, Contrast contrast)
{
    const bool dark = scheme == ColorScheme::Dark;
    const bool increased = contrast == Contrast::Increased;
    const double edgeFactor = increased ? 2 : 1;

    Palette p;
    p.text1 = dark ? white(0.95) : black(0.88);
    if (increased) {
        p.text2 = dark ? white(0.78) : black(0.68);
        p.text3 = dark ? white(0.62) : black(0.56);
    } else {
        p.text2 = dark ? white(0.60) : black(0.50);
        p.text3 = dark ? white(0.36) : black(0.30);
    }
    p.tileTint = dark ? unit(1, 0.925, 0.973, 0.065) : unit(0.184, 0.055, 0.145, 0.045);
    p.hoverTint = dark ? unit(1, 0.898, 0.965, 0.115) : unit(0.184, 0.055, 0.145, 0.08);
    p.plateEdge = dark ? white(0.07) : white(0.50);
    p.hairline = dark ? white(0.07) : black(0.06);
    p.red = dark ? eightBit(255, 69, 58, kGlyphRed) : eightBit(214, 28, 20, kGlyphRed);
    p.redText = dark ? eightBit(255, 69, 58, kWarningText) : eightBit(204, 24, 16, kWarningText);
    p.orange = dark ? eightBit(255, 159, 10, kWarningText) : eightBit(178, 64, 0, kWarningText);
    p.accent = kAccentVivid;
    p.focusRing = accent(0.9);
    p.textSelection = accent(0.38);
    p.accentEdge = accent(0.55);
    p.accentWell = accent(0.07);
    p.accentSwitchedOn = accent(0.22);
    p.wellEdge = dark ? white(0.11 * edgeFactor) : black(0.085 * edgeFactor);
    p.dotRing = dark ? white(0.28) : black(0.14);
    p.swatchEdge = dark ? white(0.14) : black(0.11);
    p.swatchRing = dark ? white(0.92) : black(0.72);
    p.surfaceTone = dark ? eightBit(18, 16, 24) : eightBit(249, 248, 251);
    return p;
}

QGradientStops evenly(std::initializer_list<QColor> colors)
{
    QGradientStops stops;
    const double last = static_cast<double>(colors.size()) - 1;
    for (const QColor &color : colors)
        stops.append({static_cast<double>(stops.size()) / last, color});
    return stops;
}

/// Qt renders fonts in whole pixels only, also those given in points (13 for 12.5 at any resolution; measured). A font
/// of the next whole size, drawn narrower, has the advances of the size between.
void setPixelSize(QFont &font, double pixels)
{
    const double whole = std::ceil(pixels);
    font.setPixelSize(static_cast<int>(whole));
    font.setStretch(static_cast<int>(std::lround(100 * pixels / whole)));
}

} // namespace

QGradientStops accentGradient()
{
    return evenly({kPink, kPurple, kBlue});
}

QGradientStops accentSeam()
{
    return evenly({kPink, kMagenta, kPurple, kBlue, kCyan});
}

const Palette &palette(ColorScheme scheme, Contrast contrast)
{
    static const Palette dark = makePalette(ColorScheme::Dark, Contrast::Normal);
    static const Palette light = makePalette(ColorScheme::Light, Contrast::Normal);
    static const Palette darkIncreased = makePalette(ColorScheme::Dark, Contrast::Increased);
    static const Palette lightIncreased = makePalette(ColorScheme::Light, Contrast::Increased);
    if (contrast == Contrast::Increased)
        return scheme == ColorScheme::Dark ? darkIncreased : lightIncreased;
    return scheme == ColorScheme::Dark ? dark : light;
}

QFont interfaceFont(double pixels, QFont::Weight weight)
{
    QFont font = desktopFonts::interfaceFont(weight);
    setPixelSize(font, pixels);
    return font;
}

QFont monospacedFont(double pixels)
{
    QFont font = desktopFonts::monospacedFont();
    setPixelSize(font, pixels);
    return font;
}

QFont font(FontRole role)
{
    switch (role) {
    case FontRole::Title: {
        QFont font = interfaceFont(14, QFont::DemiBold);
        font.setLetterSpacing(QFont::AbsoluteSpacing, -0.1);
        return font;
    }
    case FontRole::Body:
        return interfaceFont(12.5, QFont::Normal);
    case FontRole::BodyMedium:
        return interfaceFont(12.5, QFont::Medium);
    case FontRole::Caption:
        return interfaceFont(11, QFont::Normal);
    case FontRole::CaptionMedium:
        return interfaceFont(11, QFont::Medium);
    case FontRole::Micro:
        return interfaceFont(10, QFont::Medium);
    case FontRole::SectionLabel: {
        QFont font = interfaceFont(10, QFont::DemiBold);
        font.setLetterSpacing(QFont::AbsoluteSpacing, 0.6);
        font.setCapitalization(QFont::AllUppercase);
        return font;
    }
    case FontRole::Mono:
        return monospacedFont(12);
    case FontRole::MonoLarge:
        break;
    }
    return monospacedFont(15);
}

} // namespace ostrelle::Theme
