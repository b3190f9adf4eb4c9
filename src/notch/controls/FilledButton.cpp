#include "notch/controls/FilledButton.h"

#include "notch/NotchAppearance.h"
#include "notch/controls/ColorMix.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>

#include <cmath>
#include <numbers>

namespace ostrelle {
namespace {

constexpr double kRadius = 8;
constexpr double kPaddingX = 16;
constexpr double kPaddingY = 7;
constexpr double kLineHeight = 16;
constexpr double kPressedScale = 0.97;
constexpr double kDisabledOpacity = 0.4;
constexpr double kHoverBrightness = 1.06;
/// As in style sheets: 0 is up, clockwise.
constexpr double kGradientDegrees = 100;
constexpr double kEdge = 0.22;
constexpr double kTopEdge = 0.25;
constexpr double kTopEdgeWidth = 0.75;
constexpr double kGlowDark = 0.3;
constexpr double kGlowLight = 0.14;
/// Standard deviation of a shadow of radius 7.
constexpr double kGlowSigma = 3.5;
constexpr double kGlowReach = 10.5;
constexpr double kGlowStep = 0.5;
constexpr QColor kLabelShadow = Theme::detail::unit(20.0 / 255, 0, 30.0 / 255, 0.42);

QFont labelFont()
{
    QFont font = Theme::font(FontRole::BodyMedium);
    font.setWeight(QFont::DemiBold);
    return font;
}

/// The line of a gradient at an angle that reaches the corners of the box.
QLinearGradient accentAcross(const QRectF &box, double brightness)
{
    const double angle = kGradientDegrees * std::numbers::pi / 180;
    const QPointF direction(std::sin(angle), -std::cos(angle));
    const double half = (std::abs(direction.x()) * box.width() + std::abs(direction.y()) * box.height()) / 2;
    QLinearGradient gradient(box.center() - direction * half, box.center() + direction * half);
    for (const auto &[position, color] : Theme::accentGradient()) {
        const auto brightened = [brightness](float channel) {
            return std::min(1.0F, static_cast<float>(channel * brightness));
        };
        gradient.setColorAt(position, QColor::fromRgbF(brightened(color.redF()), brightened(color.greenF()),
                                                       brightened(color.blueF())));
    }
    return gradient;
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

/// Beyond an edge that is long against the blur, a shadow is a Gaussian step of the distance.
void FilledButton::paintGlow(QPainter &painter) const
{
    const double strength = appearance().scheme() == ColorScheme::Dark ? kGlowDark : kGlowLight;
    for (double distance = 0; distance < kGlowReach; distance += kGlowStep) {
        const double outer = distance + kGlowStep;
        const double opacity = 0.5 * std::erfc((distance + kGlowStep / 2) / (kGlowSigma * std::numbers::sqrt2));
        QPainterPath band = rounded(shape().adjusted(-outer, -outer, outer, outer), kRadius + outer);
        band.addPath(rounded(shape().adjusted(-distance, -distance, distance, distance), kRadius + distance));
        painter.fillPath(band, faded(Theme::kAccentVivid, strength * opacity));
    }
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
    painter.fillPath(plate, accentAcross(box, 1 + (kHoverBrightness - 1) * hoverAmount()));
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
