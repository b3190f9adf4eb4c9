#include "notch/GlassLayers.h"

#include "notch/Backdrop.h"
#include "notch/GlassPainter.h"
#include "notch/GradientSampler.h"
#include "notch/NotchSurface.h"
#include "notch/SurfaceFrame.h"
#include "notch/ThemeGradients.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace ostrelle {
namespace {

constexpr double kPoolReach = 360;
constexpr double kDarkVeil = 0.8;
constexpr double kWash = 0.84;
constexpr double kWashIncreasedContrast = 0.94;
constexpr double kSheenLight = 0.55;

/// A colour that is laid over another, not premultiplied.
struct Layer
{
    Quad color;
    double opacity;
};

Quad laneColor(const QColor &color)
{
    return Quad{color.blueF(), color.greenF(), color.redF(), 1} * splat(kLaneFull);
}

Quad laneColor(const GradientSampler::Color &color)
{
    return Quad{color[2], color[1], color[0], 1} * splat(kLaneFull);
}

Quad over(Quad below, const Layer &layer)
{
    const auto opacity = static_cast<float>(layer.opacity);
    return below + (layer.color - below) * splat(opacity);
}

Quad plusLighter(Quad below, const Layer &layer)
{
    return least(below + layer.color * splat(static_cast<float>(layer.opacity)), splat(kLaneFull));
}

/// The backdrop at any place, between its pixels and beyond its edges.
class BackdropSampler
{
public:
    BackdropSampler(const SurfaceState &state)
        : m_image(state.backdrop.format() == QImage::Format_RGB32
                      ? state.backdrop
                      : state.backdrop.convertToFormat(QImage::Format_RGB32))
        , m_tone(laneColor(state.scheme == ColorScheme::Dark ? QColor(92, 84, 110) : QColor(236, 233, 241)))
    {
        if (m_image.isNull())
            return;
        QRectF area = state.backdropArea;
        if (area.isEmpty()) {
            const QSizeF size = QSizeF(m_image.size()) * kBackdropReduction;
            area = QRectF(QPointF(-size.width() / 2, 0), size);
        }
        m_origin = area.topLeft();
        m_perPixel = {m_image.width() / area.width(), m_image.height() / area.height()};
    }

    /// `position` is relative to the surface's top centre, in logical pixels.
    Quad at(const QPointF &position) const
    {
        if (m_image.isNull())
            return m_tone;
        const auto [x, partX] = place((position.x() - m_origin.x()) * m_perPixel.x() - 0.5, m_image.width());
        const auto [y, partY] = place((position.y() - m_origin.y()) * m_perPixel.y() - 0.5, m_image.height());
        const Quad upper = mix(pixel(x, y), pixel(x + 1, y), partX);
        const Quad lower = mix(pixel(x, y + 1), pixel(x + 1, y + 1), partX);
        return mix(upper, lower, partY);
    }

private:
    static std::pair<int, float> place(double coordinate, int size)
    {
        const double inside = std::clamp(coordinate, 0.0, size - 1.0);
        const int index = static_cast<int>(inside);
        return {index, static_cast<float>(inside - index)};
    }

    static Quad mix(Quad a, Quad b, float part) { return a + (b - a) * splat(part); }

    Quad pixel(int x, int y) const
    {
        const int row = std::min(y, m_image.height() - 1);
        const int column = std::min(x, m_image.width() - 1);
        const QRgb rgb = reinterpret_cast<const QRgb *>(m_image.constScanLine(row))[column];
        constexpr float kStep = 1 << kLaneShift;
        return Quad{static_cast<float>(qBlue(rgb)), static_cast<float>(qGreen(rgb)), static_cast<float>(qRed(rgb)),
                    255} *
               splat(kStep);
    }

    QImage m_image;
    Quad m_tone;
    QPointF m_origin;
    QPointF m_perPixel;
};

double veilOpacity(ColorScheme scheme, double glass)
{
    return scheme == ColorScheme::Dark ? 1 - (1 - kDarkVeil) * glass : 1 - glass;
}

double washOpacity(const SurfaceState &state, double glass)
{
    if (state.scheme == ColorScheme::Dark)
        return 0;
    return (state.contrast == Contrast::Increased ? kWashIncreasedContrast : kWash) * glass;
}

} // namespace

std::vector<LaneQuad> glassLayers(const SurfaceState &state, const SurfaceFrame &frame, const GlassGrid &grid)
{
    const double width = frame.size.width();
    const double height = frame.size.height();
    const bool dark = state.scheme == ColorScheme::Dark;
    const bool paintsBackdrop = state.glass != SurfaceState::Glass::Compositor && frame.glass > 0;
    const Quad black{0, 0, 0, kLaneFull};
    const Quad base = state.glass == SurfaceState::Glass::None ? black : splat(0);

    const BackdropSampler backdrop(state);
    const Layer veil{black, veilOpacity(state.scheme, frame.glass)};
    const Layer wash{laneColor(Theme::detail::unit(0.976, 0.973, 0.984)), washOpacity(state, frame.glass)};
    const GradientSampler poolColors(themeColors(state.theme, state.scheme), {0, height}, {width, 0});
    const CornerFalloff poolFalloff(frame.size, std::min(state.emphasis.poolReach * width, kPoolReach));
    const double poolOpacity = frame.glass * cornerOpacity(state.theme, state.scheme) * state.emphasis.poolStrength;

    std::vector<LaneQuad> nodes;
    nodes.reserve(static_cast<std::size_t>(grid.columns) * static_cast<std::size_t>(grid.rows));
    for (int row = 0; row < grid.rows; ++row) {
        for (int column = 0; column < grid.columns; ++column) {
            const QPointF position = grid.position(column, row);
            Quad color = base;
            if (paintsBackdrop)
                color = over(color, {backdrop.at(position - QPointF(width / 2, 0)), frame.glass});
            color = over(color, veil);
            color = over(color, wash);
            if (const double opacity = poolOpacity * poolFalloff.at(position); opacity > 0) {
                const Layer pool{laneColor(poolColors.at(position)), opacity};
                color = dark ? plusLighter(color, pool) : over(color, pool);
            }
            nodes.push_back({color});
        }
    }
    return nodes;
}

float sheenAt(double height, const SurfaceState &state, const SurfaceFrame &frame)
{
    struct Stop
    {
        double height;
        double opacity;
    };
    constexpr std::array kStops = {Stop{0, 0.13}, Stop{0.22, 0.0364}, Stop{0.6, 0}, Stop{1, 0.052}};

    const double place = std::clamp(height, 0.0, 1.0);
    std::size_t upper = 1;
    while (upper + 1 < kStops.size() && place > kStops[upper].height)
        ++upper;
    const Stop &from = kStops[upper - 1];
    const Stop &to = kStops[upper];
    const double part = (place - from.height) / (to.height - from.height);
    const double opacity = from.opacity + (to.opacity - from.opacity) * part;
    const double strength = state.scheme == ColorScheme::Dark ? frame.glass : kSheenLight * frame.glass;
    return static_cast<float>(opacity * strength) * kLaneFull;
}

} // namespace ostrelle
