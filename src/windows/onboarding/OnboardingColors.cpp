#include "windows/onboarding/OnboardingColors.h"

#include "notch/NotchAppearance.h"
#include "notch/controls/ColorMix.h"
#include "windows/WindowTints.h"

namespace ostrelle {
namespace {

using windowTints::black;
using windowTints::plum;
using windowTints::white;

OnboardingColors makeDark(Contrast contrast)
{
    const bool increased = contrast == Contrast::Increased;
    OnboardingColors c;
    c.ground = faded(QColor(17, 14, 20), increased ? 0.94 : 0.84);
    c.rimTop = white(0.16);
    c.rim = white(increased ? 0.22 : 0.10);
    c.rimOutside = black(0.50);
    c.shadow = black(0.52);
    c.footer = white(0.035);
    c.card = Theme::palette(ColorScheme::Dark, contrast).tileTint;
    c.cardTopEdge = white(0.07);
    c.cardOutline = white(increased ? 0.16 : 0.045);
    c.key = white(0.12);
    c.keyOutline = white(0.05);
    c.keyBottom = black(0.34);
    c.glowStrength = 1.25;
    c.markGlow = 0.34;
    return c;
}

OnboardingColors makeLight(Contrast contrast)
{
    const bool increased = contrast == Contrast::Increased;
    OnboardingColors c;
    c.ground = faded(QColor(249, 247, 251), increased ? 0.95 : 0.86);
    c.rimTop = white(0.80);
    c.rim = white(0.80);
    c.rimOutside = plum(increased ? 0.30 : 0.14);
    c.shadow = faded(QColor(38, 12, 30), 0.30);
    c.footer = white(0.50);
    c.card = white(0.62);
    c.cardTopEdge = white(0);
    c.cardOutline = plum(increased ? 0.18 : 0.07);
    c.key = white(1);
    c.keyOutline = plum(0.10);
    c.keyBottom = plum(0.17);
    c.glowStrength = 1.9;
    c.markGlow = 0.30;
    return c;
}

} // namespace

const OnboardingColors &OnboardingColors::of(ColorScheme scheme, Contrast contrast)
{
    static const OnboardingColors dark = makeDark(Contrast::Normal);
    static const OnboardingColors darkIncreased = makeDark(Contrast::Increased);
    static const OnboardingColors light = makeLight(Contrast::Normal);
    static const OnboardingColors lightIncreased = makeLight(Contrast::Increased);
    if (scheme == ColorScheme::Dark)
        return contrast == Contrast::Increased ? darkIncreased : dark;
    return contrast == Contrast::Increased ? lightIncreased : light;
}

const OnboardingColors &OnboardingColors::of(const NotchAppearance &appearance)
{
    return of(appearance.scheme(), appearance.contrast());
}

} // namespace ostrelle
