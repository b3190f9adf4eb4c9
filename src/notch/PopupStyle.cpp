#include "notch/PopupStyle.h"

#include "notch/controls/ColorMix.h"

#include <QApplication>
#include <QPalette>

namespace ostrelle {
namespace {

/// The glass is not there behind a menu: its tone, a little nearer to the text so that an edge is seen.
QColor groundTone(const NotchAppearance &appearance)
{
    const Theme::Palette &palette = appearance.palette();
    QColor text = palette.text1;
    text.setAlphaF(1);
    return mixed(palette.surfaceTone, text, appearance.scheme() == ColorScheme::Dark ? 0.07 : 0);
}

/// The colour as it looks on opaque `ground`.
QColor flattened(const QColor &color, const QColor &ground)
{
    QColor opaque = color;
    opaque.setAlphaF(1);
    return mixed(ground, opaque, color.alphaF());
}

} // namespace

QString menuStyleSheet(const NotchAppearance &appearance)
{
    const Theme::Palette &palette = appearance.palette();
    const QColor ground = groundTone(appearance);
    return QStringLiteral("QMenu { background: %1; border: 1px solid %2; border-radius: 8px; padding: 4px; }"
                          "QMenu::item { padding: 4px 14px; border-radius: 5px; }"
                          "QMenu::item:selected { background: %3; }"
                          "QMenu::item:disabled { color: %4; background: transparent; }"
                          "QMenu::separator { height: 1px; background: %2; margin: 4px 10px; }")
        .arg(ground.name(), flattened(faded(palette.text1, 0.16), ground).name(),
             flattened(faded(palette.accent, 0.55), ground).name(), flattened(palette.text3, ground).name());
}

QColor menuTextColor(const NotchAppearance &appearance)
{
    return flattened(appearance.palette().text1, groundTone(appearance));
}

QColor menuWarningColor(const NotchAppearance &appearance)
{
    return flattened(appearance.palette().red, groundTone(appearance));
}

void applyToolTipStyle(const NotchAppearance &appearance)
{
    const Theme::Palette &palette = appearance.palette();
    const QColor ground = groundTone(appearance);
    QPalette colors = QApplication::palette();
    for (const QPalette::ColorRole role : {QPalette::ToolTipBase, QPalette::Window, QPalette::Base})
        colors.setColor(role, ground);
    for (const QPalette::ColorRole role : {QPalette::ToolTipText, QPalette::WindowText, QPalette::Text})
        colors.setColor(role, flattened(palette.text1, ground));
    // The class that shows tooltips; the only name under which it can be reached.
    QApplication::setPalette(colors, "QTipLabel");
    QApplication::setFont(Theme::font(FontRole::Caption), "QTipLabel");
}

} // namespace ostrelle
