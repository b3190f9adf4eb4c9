#include "notch/controls/FilledButton.h"

#include "notch/NotchAppearance.h"
#include "notch/controls/AngledGradient.h"
#include "notch/controls/ColorMix.h"
#include "notch/controls/OuterGlow.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace ostrelle {
namespace {

constexpr double kRadius = 8;
constexpr double kPaddingX = 16;
constexpr double kPaddingY = 7;
constexpr double kLineHeight = 16;
constexpr double kPressedScale = 0.97;
constexpr double kDisabledOpacity = 0.4;
constexpr double kHoverBrightness = 1.06;
constexpr double kGradientDegrees = 100;
constexpr double kEdge = 0.22;
constexpr double kTopEdge = 0.25;
constexpr double kTopEdgeWidth = 0.75;
constexpr double kGlowDark = 0.3;
constexpr double kGlowLight = 0.14;
/// Standard deviation of a shadow of radius 7.
constexpr double kGlowSigma = 3.5;
constexpr QColor kLabelShadow = Theme::detail::unit(20.0 / 255, 0, 30.0 / 255, 0.42);

QFont labelFont()
{
    QFont font = Theme::font(FontRole::BodyMedium);
    font.setWeight(QFont::DemiBold);
    return font;
}

QGradientStops brightened(const QGradientStops &stops, double brightness)
{
    const auto channel = [brightness](float value) { return std::min(1.0F, static_cast<float>(value * brightness)); };
    QGradientStops result;
    for (const auto &[position, color] : stops)
        result.append(
            {position, QColor::fromRgbF(channel(color.redF()), channel(color.greenF()), channel(color.blueF()))});
    return result;
}

QPainterPath rounded(const QRectF &rect, double radius)
{
    QPainterPath path;
    path.addRoundedRect(rect, radius, radius);
    return path;
}

} // namespace

FilledButton::FilledButton(const ControlContext &context, const QString &label, QWidget *parent)
    : NotchButton(context, parent)
{
    setText(label);
    setAccessibleName(label);
    setFocusPolicy(Qt::TabFocus);
}

QSize FilledButton::sizeHint() const
{
    const double width = QFontMetricsF(labelFont()).horizontalAdvance(text()) + 2 * kPaddingX;
    return {static_cast<int>(std::ceil(width)), static_cast<int>(kLineHeight + 2 * kPaddingY)};
}

double FilledButton::cornerRadius() const
{
    return kRadius;
}

void FilledButton::showEvent(QShowEvent *event)
{
    NotchButton::showEvent(event);
    updateAura();
}

void FilledButton::paintGlow(QPainter &painter) const
{
    const double strength = appearance().scheme() == ColorScheme::Dark ? kGlowDark : kGlowLight;
    paintOuterGlow(painter, shape(), kRadius, kGlowSigma, faded(Theme::kAccentVivid, strength));
}

void FilledButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(isEnabled() ? 1 : kDisabledOpacity);
    const QRectF box = shape();
    painter.translate(box.center());
    painter.scale(pressScale(kPressedScale), pressScale(kPressedScale));
    painter.translate(-box.center());

    const QPainterPath plate = rounded(box, kRadius);
    painter.fillPath(plate,
                     angledGradient(box, kGradientDegrees,
                                    brightened(Theme::accentGradient(), 1 + (kHoverBrightness - 1) * hoverAmount())));
    painter.fillPath(plate.subtracted(plate.translated(0, kTopEdgeWidth)), faded(Qt::white, kTopEdge));
    painter.setPen(QPen(faded(Qt::white, kEdge), 0.5));
    painter.drawPath(rounded(box.adjusted(0.25, 0.25, -0.25, -0.25), kRadius - 0.25));

    painter.setFont(labelFont());
    // Three soft copies stand for a blur of 1.5.
    for (const double offset : {-0.25, 0.5, 1.25}) {
        painter.setPen(faded(kLabelShadow, 1.0 / 3));
        painter.drawText(box.translated(0, offset), Qt::AlignCenter, text());
    }
    painter.setPen(Qt::white);
    painter.drawText(box, Qt::AlignCenter, text());
}

} // namespace ostrelle
