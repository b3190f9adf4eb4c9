#include "windows/WindowColors.h"

#include "notch/NotchAppearance.h"
#include "notch/controls/ColorMix.h"
#include "windows/WindowTints.h"

namespace ostrelle {
namespace {

using windowTints::black;
using windowTints::plum;
using windowTints::white;

WindowColors makeDark(Contrast contrast)
{
    const bool increased = contrast == Contrast::Increased;
    const Theme::Palette &notch = Theme::palette(ColorScheme::Dark, contrast);
    WindowColors c;
    c.page = QColor(0x1E, 0x1B, 0x22);
    c.sidebar = QColor(0x18, 0x16, 0x1C);
    c.card = notch.tileTint;
    c.cardTopEdge = white(0.07);
    c.cardOutline = white(0);
    c.cardShadow = black(0);
    c.text1 = white(0.95);
    c.text2 = white(increased ? 0.80 : 0.62);
    c.text3 = white(increased ? 0.66 : 0.40);
    c.sectionLabel = white(increased ? 0.62 : 0.36);
    c.hairline = white(increased ? 0.14 : 0.07);
    c.control = white(0.081);
    c.controlHover = white(0.144);
    c.track = white(0.05);
    c.hover = notch.tileTint;
    c.chosen = notch.hoverTint;
    c.segment = white(0.17);
    c.switchOff = white(0.27);
    c.switchOffHover = white(0.35);
    c.switchOn = Theme::kAccentVivid;
    c.switchOnHover = QColor::fromRgbF(0.93F, 0.34F, 0.72F);
    c.accentInk = QColor(0xF2, 0x68, 0xC0);
    c.dangerInk = QColor(0xFF, 0x74, 0x6B);
    c.danger = QColor(0xD4, 0x2F, 0x3F);
    c.dangerHover = QColor(0xDF, 0x46, 0x53);
    c.warningInk = QColor(0xF5, 0xA7, 0x3B);
    c.warningDot = c.warningInk;
    c.menu = QColor(0x2B, 0x28, 0x30);
    c.menuOutline = white(0.12);
    c.lifted = QColor(0x3A, 0x36, 0x3F);
    c.scrim = black(0.46);
    c.scrollThumb = white(0.24);
    return c;
}

WindowColors makeLight(Contrast contrast)
{
    const bool increased = contrast == Contrast::Increased;
    const Theme::Palette &notch = Theme::palette(ColorScheme::Light, contrast);
    WindowColors c;
    c.page = QColor(0xF6, 0xF3, 0xF8);
    c.sidebar = QColor(0xEC, 0xE8, 0xEF);
    c.card = Qt::white;
    c.cardTopEdge = white(0);
    c.cardOutline = plum(0.075);
    c.cardShadow = plum(0.045);
    c.text1 = black(0.88);
    c.text2 = black(increased ? 0.72 : 0.57);
    c.text3 = black(increased ? 0.62 : 0.47);
    c.sectionLabel = black(increased ? 0.62 : 0.47);
    c.hairline = plum(increased ? 0.17 : 0.085);
    c.control = plum(0.06);
    c.controlHover = plum(0.105);
    c.track = plum(0.055);
    c.hover = notch.tileTint;
    c.chosen = notch.hoverTint;
    c.segment = Qt::white;
    c.switchOff = plum(0.32);
    c.switchOffHover = plum(0.40);
    c.switchOn = Theme::kAccentVivid;
    c.switchOnHover = QColor::fromRgbF(0.83F, 0.19F, 0.60F);
    c.accentInk = QColor(0xB5, 0x20, 0x7F);
    c.dangerInk = QColor(0xC9, 0x19, 0x1F);
    c.danger = QColor(0xCF, 0x26, 0x36);
    c.dangerHover = QColor(0xB3, 0x1D, 0x2C);
    c.warningInk = QColor(0x9A, 0x4A, 0x00);
    c.warningDot = QColor(0xE0, 0x8A, 0x00);
    c.menu = QColor(0xFD, 0xFC, 0xFE);
    c.menuOutline = plum(0.12);
    c.lifted = Qt::white;
    c.scrim = faded(QColor(38, 24, 34), 0.20);
    c.scrollThumb = plum(0.26);
    return c;
}

} // namespace

const WindowColors &WindowColors::of(ColorScheme scheme, Contrast contrast)
{
    static const WindowColors dark = makeDark(Contrast::Normal);
    static const WindowColors darkIncreased = makeDark(Contrast::Increased);
    static const WindowColors light = makeLight(Contrast::Normal);
    static const WindowColors lightIncreased = makeLight(Contrast::Increased);
    if (scheme == ColorScheme::Dark)
        return contrast == Contrast::Increased ? darkIncreased : dark;
    return contrast == Contrast::Increased ? lightIncreased : light;
}

const WindowColors &WindowColors::of(const NotchAppearance &appearance)
{
    return of(appearance.scheme(), appearance.contrast());
}

} // namespace ostrelle
