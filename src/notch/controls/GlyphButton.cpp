#include "notch/controls/GlyphButton.h"

#include "notch/Glyph.h"
#include "notch/NotchAppearance.h"
#include "notch/controls/ColorMix.h"

#include <QPainter>
#include <QPainterPath>
#include <QRadialGradient>

#include <cmath>
#include <numbers>

namespace ostrelle {
namespace {

constexpr double kPressedScale = 0.94;
constexpr double kPressedOpacity = 0.75;
constexpr double kDisabledOpacity = 0.35;
constexpr double kGlowOpacity = 0.45;
/// Standard deviation of a shadow of radius 6.
constexpr double kGlowSigma = 3;
constexpr double kGlowReach = 3 * kGlowSigma;
constexpr int kGlowSteps = 9;

} // namespace

GlyphButton::GlyphButton(const ControlContext &context, Content content, QWidget *parent)
    : NotchButton(context, parent)
    , m_content(std::move(content))
{
    setFixedSize(kDiameter, kDiameter);
    setHelp(m_content.help);
    setFocusPolicy(Qt::TabFocus);
}

void GlyphButton::setSymbol(const QString &symbol)
{
    if (symbol == m_content.symbol)
        return;
    m_content.symbol = symbol;
    update();
}

/// The shadow of a disc is, beyond its edge, close to a Gaussian step: half strength at the edge.
void GlyphButton::paintGlow(QPainter &painter) const
{
    const double radius = cornerRadius();
    const double outer = radius + kGlowReach;
    const QPointF centre = shape().center();
    QRadialGradient gradient(centre, outer);
    for (int i = 0; i <= kGlowSteps; ++i) {
        const double distance = kGlowReach * i / kGlowSteps;
        const double strength = 0.5 * std::erfc(distance / (kGlowSigma * std::numbers::sqrt2));
        const double edge = i == kGlowSteps ? 0 : strength;
        gradient.setColorAt((radius + distance) / outer,
                            faded(appearance().glow(), kGlowOpacity * edge * hoverAmount()));
    }
    QPainterPath ring;
    ring.addEllipse(centre, outer, outer);
    ring.addEllipse(centre, radius, radius);
    painter.fillPath(ring, gradient);
}

void GlyphButton::paintEvent(QPaintEvent *)
{
    const Theme::Palette &palette = appearance().palette();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double opacity =
        presence() * (isEnabled() ? 1 : kDisabledOpacity) * (1 + (kPressedOpacity - 1) * pressAmount());

    const QPointF centre = shape().center();
    painter.translate(centre);
    painter.scale(pressScale(kPressedScale), pressScale(kPressedScale));
    painter.translate(-centre);
    if (hoverAmount() > 0) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(faded(palette.hoverTint, hoverAmount() * opacity));
        painter.drawEllipse(shape());
    }
    const QColor &hovered = m_content.purpose == Purpose::Destructive ? palette.red : palette.text1;
    paintGlyph(painter, m_content.symbol, shape(), m_content.systemSize, GlyphWeight::Semibold,
               faded(mixed(palette.text2, hovered, hoverAmount()), opacity));
}

} // namespace ostrelle
