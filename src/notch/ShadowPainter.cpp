#include "notch/ShadowPainter.h"

#include "notch/FarShadow.h"
#include "notch/Gaussian.h"
#include "notch/PixelLanes.h"
#include "notch/SurfaceFrame.h"

#include <QImage>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace ostrelle {
namespace {

constexpr double kMargin = 46;

struct Shade
{
    double dark;
    double light;

    double on(ColorScheme scheme) const { return scheme == ColorScheme::Dark ? dark : light; }
};

constexpr Shade kFar = {0.42, 0.22};
constexpr double kFarOffset = 10;
constexpr double kFarDeviation = 11;
constexpr Shade kNear = {0.28, 0.10};
constexpr double kNearOffset = 2;
constexpr double kNearDeviation = 2.5;
constexpr Shade kContact = {0.45, 0.10};
constexpr float kContactWidth = 1.5F;

/// Deviations after which nothing of a blur is seen.
constexpr float kSeen = 3.5F;

constexpr std::size_t kLanes = 4;

/// Rows are painted four pixels at a time, beyond their end if need be.
std::size_t padded(int columns)
{
    return static_cast<std::size_t>(columns) + kLanes;
}

} // namespace

ShadowPainter::Pieces ShadowPainter::piecesOf(const SurfaceFrame &frame)
{
    const int margin = static_cast<int>(std::ceil(kMargin * frame.scale));
    const QRect body = frame.rect.toAlignedRect();
    const int top = frame.bounds.y();
    const int left = body.x() - margin;
    const int width = body.width() + 2 * margin;
    // The outline is inside the sides by less than a pixel, and inside the bottom by the corners' radius.
    const int sideWidth = margin + 1;
    const int bodyBottom = body.y() + body.height();
    const int bandTop = std::max(top, bodyBottom - static_cast<int>(std::ceil(frame.shape.bottomRadius)) - 1);
    return {QRect(left, top, sideWidth, bandTop - top), QRect(left + width - sideWidth, top, sideWidth, bandTop - top),
            QRect(left, bandTop, width, bodyBottom + margin - bandTop)};
}

ShadowPainter::ShadowPainter(ColorScheme scheme, const SurfaceFrame &frame, const QRect &piece)
    : m_frame(frame)
    , m_outline(frame)
    , m_scheme(scheme)
    , m_piece(piece)
    , m_nearDeviation(static_cast<float>(kNearDeviation * frame.scale))
    , m_nearOffset(static_cast<float>(kNearOffset * frame.scale))
    , m_edgeReach(std::max(kSeen * m_nearDeviation, m_outline.ear() + static_cast<float>(frame.scale)))
    , m_straight(padded(piece.width()))
    , m_row(padded(piece.width()))
    , m_clear(padded(piece.width()))
    , m_line(padded(piece.width()))
{
    const double inset = std::max(frame.shape.bottomRadius, kSeen * kFarDeviation * frame.scale);
    const double reach = std::max(0.0, frame.rect.width() / 2 - inset);
    const auto columnAt = [&](double x) { return std::clamp(static_cast<int>(x) - piece.x(), 0, piece.width()); };
    m_flatFrom = columnAt(frame.rect.center().x() - reach);
    m_flatTo = columnAt(frame.rect.center().x() + reach);
    fillEdges(m_straight, m_outline.height() / 2);
}

void ShadowPainter::paint(QImage &image)
{
    FarShadow farShadow(m_frame, {kFar.on(m_scheme) * m_frame.glass, kFarOffset, kFarDeviation}, m_piece.x(),
                        m_line.size());
    farShadow.fillColumns(0, std::min(m_flatFrom + 1, m_piece.width()));
    farShadow.fillColumns(m_flatTo, m_piece.width());
    for (int row = 0; row < m_piece.height(); ++row) {
        const double y = m_piece.y() + row + 0.5 - m_frame.rect.y();
        farShadow.setRow(y / m_frame.scale);
        const EdgeRow &edges = edgeRow(static_cast<float>(y));
        const auto paintFrom = [&](int from, int to) {
            for (auto i = static_cast<std::size_t>(from); i < static_cast<std::size_t>(to); i += kLanes) {
                const Quad clear = splat(1);
                const Quad shade = clear - (clear - farShadow.fourAt(i)) * (clear - fourFrom(&edges.shade[i]));
                const Quad alpha = shade * fourFrom(&edges.outside[i]) * splat(255) + splat(0.5F);
                const QuadInt pixels = __builtin_convertvector(alpha, QuadInt) << 24;
                std::memcpy(&m_line[i], &pixels, sizeof(pixels));
            }
        };
        // The last lanes may spill over into the next part, which is painted after them.
        paintFrom(0, std::min(m_flatFrom + 1, m_piece.width()));
        if (m_flatTo > m_flatFrom)
            std::fill(m_line.begin() + m_flatFrom + 1, m_line.begin() + m_flatTo,
                      m_line[static_cast<std::size_t>(m_flatFrom)]);
        paintFrom(m_flatTo, m_piece.width());
        std::memcpy(image.scanLine(row), m_line.data(), static_cast<std::size_t>(m_piece.width()) * sizeof(QRgb));
    }
}

const ShadowPainter::EdgeRow &ShadowPainter::edgeRow(float y)
{
    const float blur = kSeen * m_nearDeviation;
    if (y > m_outline.height() + m_nearOffset + blur)
        return m_clear;
    const float upper = m_nearOffset + std::max(m_outline.ear(), blur);
    const float lower = m_outline.height() - std::max(m_outline.corner(), blur);
    if (y >= upper && y <= lower)
        return m_straight;
    fillEdges(m_row, y);
    return m_row;
}

void ShadowPainter::fillEdges(EdgeRow &edges, float y) const
{
    const auto columnAt = [&](double x) { return std::clamp(static_cast<int>(x) - m_piece.x(), 0, m_piece.width()); };
    const int from = columnAt(m_frame.rect.x() - static_cast<double>(m_edgeReach));
    const int to = columnAt(m_frame.rect.x() + m_frame.rect.width() + static_cast<double>(m_edgeReach) + 1);
    for (int column = from; column < std::min(m_flatFrom + 1, to); ++column)
        fillEdge(edges, y, column);
    for (int column = std::max(m_flatTo, from); column < to; ++column)
        fillEdge(edges, y, column);
}

void ShadowPainter::fillEdge(EdgeRow &edges, float y, int column) const
{
    const auto glass = static_cast<float>(m_frame.glass);
    const float nearOpacity = static_cast<float>(kNear.on(m_scheme)) * glass;
    const float contactOpacity = static_cast<float>(kContact.on(m_scheme)) * glass;
    const float side = m_outline.sideOf(m_piece.x() + column);
    const float depth = m_outline.depth(side, y);
    const float contact = contactOpacity * lineCoverage(depth, kContactWidth * static_cast<float>(m_frame.scale));
    const float shadow = nearOpacity * nearShadow(side, y - m_nearOffset);
    const auto i = static_cast<std::size_t>(column);
    edges.outside[i] = depth < 0.5F ? 1 : 0;
    edges.shade[i] = 1 - (1 - contact) * (1 - shadow);
}

/// The near shadow is sharp beside the radii, so only the distance to the outline counts. `y` is without its offset.
float ShadowPainter::nearShadow(float side, float y) const
{
    if (m_outline.isBesideEar(side, y))
        return earShadow(-side, y);
    return nearIntegral(y) * nearIntegral(m_outline.depth(side, y));
}

/// An ear lies between the top edge and a curve that leaves it at a right angle and ends parallel to it. Two edges at a
/// right angle blur as a product, two parallel ones as a sum.
float ShadowPainter::earShadow(float outside, float y) const
{
    const float top = nearIntegral(y);
    const float curve = nearIntegral(m_outline.depth(-outside, y));
    const float square = top * curve;
    const float parallel = std::max(0.0F, top + curve - 1);
    return square + (parallel - square) * (outside / m_outline.ear());
}

float ShadowPainter::nearIntegral(float depth) const
{
    return quickGaussianIntegral(depth / m_nearDeviation);
}

} // namespace ostrelle
