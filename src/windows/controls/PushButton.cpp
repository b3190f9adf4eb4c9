#include "windows/controls/PushButton.h"

#include "notch/NotchAppearance.h"
#include "notch/controls/AngledGradient.h"
#include "notch/controls/ColorMix.h"
#include "notch/controls/OuterGlow.h"
#include "windows/WindowColors.h"
#include "windows/controls/DisabledLook.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <array>
#include <cmath>

namespace ostrelle {
namespace {

constexpr double kRadius = 8;
constexpr double kPressedScale = 0.97;
constexpr double kPressedOpacity = 0.75;
constexpr double kProminentPressedOpacity = 0.88;

constexpr double kGradientDegrees = 100;
/// The sweep goes beyond the button, and under a veil, so that the label on it is read everywhere.
constexpr std::array kSweepPositions = {-0.08, 0.52, 1.18};
constexpr QColor kVeil = Theme::detail::unit(20.0 / 255, 0, 30.0 / 255, 0.16);
constexpr double kEdge = 0.22;
constexpr double kHoverLight = 0.10;
/// A glow of radius r is a Gaussian of deviation r / 2.
constexpr double kGlowDeviation = 3.5;
constexpr double kHoverGlowDeviation = 9;
constexpr double kHoverGlow = 0.45;

QFont labelFont(PushButton::Kind kind)
{
    return Theme::interfaceFont(12.5, kind == PushButton::Kind::Plain ? QFont::Medium : QFont::DemiBold);
}

QGradientStops sweep()
{
    QGradientStops stops = Theme::accentGradient();
    for (qsizetype i = 0; i < stops.size(); ++i)
        stops[i].first = kSweepPositions.at(static_cast<std::size_t>(i));
    return stops;
}

} // namespace

PushButton::PushButton(const ControlContext &context, const QString &label, Kind kind, const Measures &measures,
                       QWidget *parent)
    : NotchButton(context, parent)
    , m_kind(kind)
    , m_measures(measures)
{
    setText(label);
    setAccessibleName(label);
    setFocusPolicy(Qt::TabFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(&context.appearance, &NotchAppearance::changed, this, qOverload<>(&QWidget::update));
}

QSize PushButton::sizeHint() const
{
    const double width = QFontMetricsF(labelFont(m_kind)).horizontalAdvance(text()) + 2 * m_measures.padding;
    return {static_cast<int>(std::ceil(width)), static_cast<int>(m_measures.height)};
}

double PushButton::cornerRadius() const
{
    return kRadius;
}

int PushButton::auraReach() const
{
    return m_kind == Kind::Prominent ? static_cast<int>(outerGlowReach(kHoverGlowDeviation)) : NotchButton::auraReach();
}

void PushButton::showEvent(QShowEvent *event)
{
    NotchButton::showEvent(event);
    updateAura();
}

void PushButton::paintGlow(QPainter &painter) const
{
    const double rest = appearance().scheme() == ColorScheme::Dark ? 0.30 : 0.14;
    const double hover = std::clamp(hoverAmount(), 0.0, 1.0);
    painter.setPen(Qt::NoPen);
    paintOuterGlow(painter, shape(), kRadius, kGlowDeviation, faded(Theme::kAccentVivid, rest * (1 - hover)));
    paintOuterGlow(painter, shape(), kRadius, kHoverGlowDeviation, faded(Theme::kAccentVivid, kHoverGlow * hover));
}

QBrush PushButton::fill() const
{
    const WindowColors &colors = WindowColors::of(appearance());
    switch (m_kind) {
    case Kind::Plain:
        return mixed(colors.control, colors.controlHover, std::clamp(std::max(hoverAmount(), pressAmount()), 0.0, 1.0));
    case Kind::Destructive:
        return mixed(colors.danger, colors.dangerHover, std::clamp(hoverAmount(), 0.0, 1.0));
    case Kind::Prominent:
        break;
    }
    return angledGradient(shape(), kGradientDegrees, sweep());
}

void PushButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double pressed = m_kind == Kind::Prominent ? kProminentPressedOpacity : kPressedOpacity;
    painter.setOpacity(presence() * opacityOf(*this) * (1 + (pressed - 1) * pressAmount()));
    painter.translate(shape().center());
    painter.scale(pressScale(kPressedScale), pressScale(kPressedScale));
    painter.translate(-shape().center());

    painter.setPen(Qt::NoPen);
    painter.setBrush(fill());
    painter.drawRoundedRect(shape(), kRadius, kRadius);
    if (m_kind == Kind::Prominent) {
        painter.setBrush(kVeil);
        painter.drawRoundedRect(shape(), kRadius, kRadius);
        painter.setBrush(faded(Qt::white, kHoverLight * std::clamp(hoverAmount(), 0.0, 1.0)));
        painter.setPen(QPen(faded(Qt::white, kEdge), 1));
        painter.drawRoundedRect(shape().adjusted(0.5, 0.5, -0.5, -0.5), kRadius - 0.5, kRadius - 0.5);
    }
    painter.setFont(labelFont(m_kind));
    painter.setPen(m_kind == Kind::Plain ? WindowColors::of(appearance()).text1 : QColor(Qt::white));
    painter.drawText(shape(), Qt::AlignCenter, text());
}

} // namespace ostrelle
