#include "notch/RimPainter.h"

#include "notch/NotchSurface.h"
#include "notch/SurfaceFrame.h"
#include "notch/ThemeGradients.h"

#include <algorithm>
#include <cmath>

namespace ostrelle {
namespace {

constexpr float kLipWidth = 0.75F;
constexpr double kLipOpacity = 0.8;
constexpr double kLipDark = 0.16;
constexpr double kLipLight = 0.75;
/// The rim may be emphasised, the hairline beside it is always the same.
constexpr float kHairlineWidth = 1;
constexpr double kRimReachShare = 0.5;
constexpr double kRimReach = 300;
/// The rim's colour changes so slowly that it is asked for once in so many pixels.
constexpr int kColorStep = 4;

/// The hairline's opacity at the top, at the knee and at the bottom.
struct HairlineTones
{
    double top;
    double knee;
    double bottom;

    double at(double height) const
    {
        constexpr double kKnee = 0.35;
        if (height < kKnee)
            return top + (knee - top) * height / kKnee;
        return knee + (bottom - knee) * (height - kKnee) / (1 - kKnee);
    }
};

constexpr HairlineTones kHairlineDark = {0.05, 0.09, 0.20};
constexpr HairlineTones kHairlineLight = {0.35, 0.50, 0.85};

Quad over(Quad below, Quad color, float opacity)
{
    return below + (color - below) * splat(opacity);
}

Quad overPremultiplied(Quad below, Quad color)
{
    return below * splat(1 - color[3] / kLaneFull) + color;
}

} // namespace

RimPainter::RimPainter(const SurfaceState &state, const SurfaceFrame &frame)
    : m_state(state)
    , m_frame(frame)
    , m_outline(frame)
    , m_gradient(themeColors(state.theme, state.scheme), {0, 0}, {frame.size.width(), frame.size.height()})
    , m_falloff(frame.size, std::min(kRimReachShare * frame.size.width(), kRimReach))
    , m_reach(std::max(kHairlineWidth, static_cast<float>(state.emphasis.rimWidth)) * static_cast<float>(frame.scale) /
                  2 +
              0.5F)
{
}

RimPainter::RowTones RimPainter::tonesAt(int deviceRow) const
{
    const double y = deviceRow + 0.5 - m_frame.rect.y();
    const double height = std::clamp(y / m_frame.rect.height(), 0.0, 1.0);
    const bool dark = m_state.scheme == ColorScheme::Dark;
    const double lip = std::clamp(kLipOpacity * m_state.expansion, 0.0, 1.0) * (dark ? kLipDark : kLipLight);
    const double hairline = (dark ? kHairlineDark : kHairlineLight).at(height) * m_frame.glass;
    return {static_cast<float>(y), static_cast<float>(lip * (1 - height)), static_cast<float>(hairline)};
}

void RimPainter::paintAndCut(int deviceRow, std::span<LanePair> row) const
{
    const RowTones tones = tonesAt(deviceRow);
    const int first = m_frame.bounds.x();
    const int last = first + m_frame.bounds.width();
    // Where the outline is between a line's half width above this row and below it.
    const float upper = m_outline.inset(tones.y - m_reach);
    const float lower = m_outline.inset(tones.y + m_reach);
    const double left = m_frame.rect.x();
    const double right = left + m_frame.rect.width();
    const double outer = std::min(upper, lower) - m_reach;
    const double inner = std::max(upper, lower) + m_reach;
    const int leftEnd = static_cast<int>(std::ceil(left + inner));
    const int rightStart = static_cast<int>(std::floor(right - inner));
    const bool alongEdge = tones.y < m_reach || tones.y > m_outline.height() - m_reach;
    if (alongEdge || leftEnd >= rightStart) {
        paintColumns(first, last, tones, row);
        return;
    }
    const int leftStart = std::max(first, static_cast<int>(std::floor(left + outer)));
    const int rightEnd = std::min(last, static_cast<int>(std::ceil(right - outer)));
    clearColumns(first, leftStart, row);
    paintColumns(leftStart, leftEnd, tones, row);
    paintColumns(rightStart, rightEnd, tones, row);
    clearColumns(rightEnd, last, row);
}

void RimPainter::clearColumns(int from, int to, std::span<LanePair> row) const
{
    for (int x = from; x < to; ++x)
        setPixelAt(row, x - m_frame.bounds.x(), splat(0));
}

void RimPainter::paintColumns(int from, int to, const RowTones &tones, std::span<LanePair> row) const
{
    const auto scale = static_cast<float>(m_frame.scale);
    const bool dark = m_state.scheme == ColorScheme::Dark;
    const Quad white = splat(kLaneFull);
    Quad rim = splat(0);
    for (int x = from; x < to; ++x) {
        if ((x - from) % kColorStep == 0)
            rim = rimColor(static_cast<float>(x - m_frame.rect.x()) + 0.5F, tones.y);
        const float depth = m_outline.depth(m_outline.sideOf(x), tones.y);
        const float edge = std::abs(depth) < std::abs(tones.y) ? depth : tones.y;
        const float lip = tones.lip * lineCoverage(edge, kLipWidth * scale);
        const float rimCoverage = lineCoverage(edge, static_cast<float>(m_state.emphasis.rimWidth) * scale);
        const float hairlineCoverage = lineCoverage(depth, kHairlineWidth * scale);

        Quad color = pixelAt(row, x - m_frame.bounds.x());
        color = dark ? least(color + white * splat(lip), white) : over(color, white, lip);
        if (rimCoverage > 0) {
            // Rim and hairline lie on each other. Laid over a half covered pixel one after the other, the upper would
            // leave half of the lower uncovered.
            const Quad lines =
                over(overPremultiplied(color, rim), white, tones.hairline * hairlineCoverage / rimCoverage);
            color = over(color, lines, rimCoverage);
        }
        setPixelAt(row, x - m_frame.bounds.x(), color * splat(insideShare(depth, tones.y)));
    }
}

float RimPainter::insideShare(float depth, float y) const
{
    // A window that is cut to the outline by whole pixels must not be half covered anywhere, and half a pixel more
    // covers what the cut may include.
    if (m_state.glass == SurfaceState::Glass::None)
        return depth > -1 ? 1 : 0;
    return std::clamp(std::min(depth, y) + 0.5F, 0.0F, 1.0F);
}

Quad RimPainter::rimColor(float x, float y) const
{
    const QPointF position = QPointF(static_cast<double>(x), static_cast<double>(y)) / m_frame.scale;
    const auto opacity = static_cast<float>(m_falloff.at(position) * m_frame.glass);
    if (opacity <= 0)
        return splat(0);
    const GradientSampler::Color color = m_gradient.at(position);
    return Quad{color[2], color[1], color[0], 1} * splat(opacity * kLaneFull);
}

} // namespace ostrelle
