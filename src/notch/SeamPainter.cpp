#include "notch/SeamPainter.h"

#include "notch/Gaussian.h"
#include "notch/NotchSurface.h"
#include "notch/SurfaceFrame.h"
#include "notch/ThemeGradients.h"

#include <QLinearGradient>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace ostrelle {
namespace {

constexpr double kInsetPerRadius = 0.55;
constexpr double kLeastInset = 10;

// A glow of radius r is a Gaussian of deviation r / 2. The outer one is cast by the line and the inner glow together.
constexpr double kInnerOpacity = 0.50;
constexpr double kInnerDeviation = 3.5;
constexpr double kOuterOpacity = 0.28;
constexpr double kOuterDeviation = 6;
constexpr double kGlowReach = 24;

/// Where the seam is fully coloured: the clear stops at both ends take one interval each.
double fadeShare(const SurfaceState &state)
{
    return 1.0 / static_cast<double>(themeColors(state.theme, state.scheme).size() + 1);
}

} // namespace

SeamPainter::SeamPainter(const SurfaceState &state, const SurfaceFrame &frame)
    : m_state(state)
    , m_frame(frame)
    , m_opacity(seamOpacity(state.expansion))
{
    const double inset = std::max(state.bottomRadius * kInsetPerRadius, kLeastInset) * frame.scale;
    const double height = state.emphasis.seamHeight * frame.scale;
    m_line = QRectF(frame.rect.x() + inset,
                    frame.rect.y() + frame.rect.height() - state.emphasis.seamAboveEdge * frame.scale - height,
                    std::max(0.0, frame.rect.width() - 2 * inset), height);
    if (m_line.isEmpty() || m_line.y() < frame.rect.y())
        m_opacity = 0;

    const QColor color = themeGlow(state.theme, state.scheme);
    m_glow = {color.blueF(), color.greenF(), color.redF(), 1};
    if (m_opacity <= 0)
        return;
    m_along.resize(static_cast<std::size_t>(frame.bounds.width()));
    const double fade = fadeShare(state) * m_line.width();
    for (std::size_t i = 0; i < m_along.size(); ++i) {
        const double x = frame.bounds.x() + static_cast<double>(i) + 0.5 - m_line.x();
        m_along[i] = static_cast<float>(std::clamp(std::min(x, m_line.width() - x) / fade, 0.0, 1.0));
    }
}

bool SeamPainter::glowsAt(int deviceRow) const
{
    return m_opacity > 0 && std::abs(deviceRow + 0.5 - m_line.center().y()) < kGlowReach * m_frame.scale;
}

void SeamPainter::glowRow(int deviceRow, std::span<float> coverage) const
{
    const double y = (deviceRow + 0.5 - m_line.center().y()) / m_frame.scale;
    const double half = m_state.emphasis.seamHeight / 2;
    const auto bar = [y, half](double deviation) { return blurredBar(y, -half, half, deviation); };
    // The line hides the part of the inner glow that lies behind it, which grows with the square of its own opacity.
    const double behindLine = kInnerOpacity * blurredBar(0, -half, half, kInnerDeviation);
    const auto inner = static_cast<float>(kInnerOpacity * bar(kInnerDeviation));
    const auto outer = static_cast<float>(
        kOuterOpacity * (bar(kOuterDeviation) + kInnerOpacity * bar(std::hypot(kInnerDeviation, kOuterDeviation))));
    const auto hidden = static_cast<float>(kOuterOpacity * behindLine * bar(kOuterDeviation));
    const auto opacity = static_cast<float>(m_opacity);
    for (std::size_t i = 0; i < m_along.size(); ++i) {
        const float line = m_along[i];
        coverage[i] = opacity * (1 - (1 - inner * line) * (1 - (outer - hidden * line) * line));
    }
}

void SeamPainter::paintLine(QPainter &painter) const
{
    if (m_opacity <= 0)
        return;
    QLinearGradient gradient(m_line.topLeft(), m_line.topRight());
    gradient.setStops(seamStops(m_state.theme, m_state.scheme));
    painter.setOpacity(m_opacity);
    painter.setPen(Qt::NoPen);
    painter.setBrush(gradient);
    painter.drawRoundedRect(m_line, m_line.height() / 2, m_line.height() / 2);
    painter.setOpacity(1);
}

} // namespace ostrelle
