#include "notch/PopupStyle.h"

#include "notch/ToolTipStyle.h"
#include "notch/controls/ColorMix.h"

#include <QApplication>
#include <QPainter>
#include <QPalette>

#include <memory>

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

QColor edgeTone(const NotchAppearance &appearance)
{
    return flattened(faded(appearance.palette().text1, 0.16), groundTone(appearance));
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
        .arg(ground.name(), edgeTone(appearance).name(), flattened(faded(palette.accent, 0.55), ground).name(),
             flattened(palette.text3, ground).name());
}

QColor menuTextColor(const NotchAppearance &appearance)
{
    return flattened(appearance.palette().text1, groundTone(appearance));
}

QColor menuWarningColor(const NotchAppearance &appearance)
{
    return flattened(appearance.palette().red, groundTone(appearance));
}

QBitmap roundedMask(const QSize &size, double radius)
{
    QBitmap mask(size);
    mask.clear();
    QPainter painter(&mask);
    painter.setBrush(Qt::color1);
    painter.drawRoundedRect(QRectF(QPointF(0, 0), size).adjusted(0, 0, -1, -1), radius, radius);
    return mask;
}

void applyToolTipStyle(const NotchAppearance &appearance)
{
    if (qobject_cast<ToolTipStyle *>(QApplication::style()) == nullptr)
        QApplication::setStyle(std::make_unique<ToolTipStyle>().release());
    const Theme::Palette &palette = appearance.palette();
    const QColor ground = groundTone(appearance);
    QPalette colors = QApplication::palette();
    for (const QPalette::ColorRole role : {QPalette::ToolTipBase, QPalette::Window, QPalette::Base})
        colors.setColor(role, ground);
    colors.setColor(QPalette::ToolTipText, flattened(palette.text1, ground));
    colors.setColor(QPalette::WindowText, edgeTone(appearance)); // its border
    // The class that shows tooltips; the only name under which it can be reached.
    QApplication::setPalette(colors, "QTipLabel");
    QApplication::setFont(Theme::font(FontRole::Caption), "QTipLabel");
}

} // namespace ostrelle
